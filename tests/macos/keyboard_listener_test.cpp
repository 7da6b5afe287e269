#include "bridge/keyboard_listener.h"

#include <gmock/gmock.h>

#include <cstdlib>

#include "bridge/program_engine.h"
#include "fresh_trust.h"

// The listener from Quartz to the engine and back.

namespace vorrin {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t keyDown = 10;
constexpr std::uint32_t keyUp = 11;
constexpr std::uint32_t timeout = 0xFFFFFFFE;
constexpr std::uint32_t userInput = 0xFFFFFFFF;
constexpr std::int64_t backtick = 50;

class MacosKeyboardListener : public testing::Test {
 protected:
  MacosKeyboardListener() { forgetTrust(quartz); }
  ~MacosKeyboardListener() override {
    engine.stopAll();
    engine.held.clear();
    engine.tap.reset();
  }

  /// Whether the event reaches the other programs.
  bool passes(const QuartzStandIn::Event& event) { return quartz.deliver(event); }

  QuartzStandIn quartz;
};

TEST_F(MacosKeyboardListener, connects_by_these_calls_in_this_order) {
  connectKeyboardListener();
  std::vector<std::string> calls;
  for (const std::string& call : quartz.takeCalls()) {
    // Those of the watch over the grant.
    if (call != "AXIsProcessTrusted()" && !call.starts_with("CFRunLoopTimerCreate") &&
        !call.starts_with("CFRunLoopAddTimer")) {
      calls.push_back(call);
    }
  }
  EXPECT_THAT(calls,
              ElementsAre("AXIsProcessTrustedWithOptions(kAXTrustedCheckOptionPrompt: true, 1)",
                          "CGEventTapCreate(1, 0, 0, 3072, callback, null)",
                          "CFMachPortCreateRunLoopSource(kCFAllocatorDefault, tap, 0)",
                          "CFRunLoopAddSource(main, source of tap, kCFRunLoopCommonModes)",
                          "CGEventTapEnable(tap, true)"));
  EXPECT_TRUE(engine.tap);
}

TEST_F(MacosKeyboardListener, swallows_both_halves_of_a_shortcut_and_toggles_once) {
  connectKeyboardListener();
  EXPECT_FALSE(passes({.type = keyDown, .keyCode = backtick}));
  EXPECT_TRUE(engine.running[0]);
  EXPECT_FALSE(passes({.type = keyDown, .keyCode = backtick, .autorepeat = 1}));
  EXPECT_TRUE(engine.running[0]);
  EXPECT_FALSE(passes({.type = keyUp, .keyCode = backtick}));
  EXPECT_TRUE(passes({.type = keyUp, .keyCode = backtick}));
}

TEST_F(MacosKeyboardListener, a_deleted_grant_costs_one_time_out_though_the_system_denies_it) {
  connectKeyboardListener();
  quartz.refusesTaps = true;
  quartz.disableTap(timeout);
  EXPECT_EQ(quartz.tapEnabled(), false);
  quartz.takeCalls();
  quartz.fireTimers();
  EXPECT_FALSE(engine.tap);
  EXPECT_FALSE(isProcessTrusted()) << "the window asks for the permission";
  quartz.refusesTaps = false;
  connectKeyboardListener();
  EXPECT_TRUE(engine.tap) << "the button of the window connects again";
}

TEST_F(MacosKeyboardListener, a_deleted_grant_is_seen_by_the_notice_of_it_and_so_is_its_return) {
  connectKeyboardListener();
  for (const bool deleted : {true, false}) {
    quartz.refusesTaps = deleted;
    quartz.notify("com.apple.accessibility.api");
    quartz.fireTimers(1);
    EXPECT_EQ(isProcessTrusted(), !deleted);
    EXPECT_FALSE(engine.tap);
  }
}

TEST_F(MacosKeyboardListener, a_tap_that_died_unheard_and_stays_off_is_gone) {
  connectKeyboardListener();
  passes({.type = keyDown, .keyCode = backtick});
  quartz.tapStaysOff = true;
  quartz.switchTapOff();
  quartz.fireTimers();
  EXPECT_FALSE(engine.running[0]);
  EXPECT_FALSE(engine.tap) << "the window says that it is not connected";
}

TEST_F(MacosKeyboardListener, a_tap_that_is_disabled_now_and_then_stops_all_and_is_enabled_again) {
  connectKeyboardListener();
  for (const std::uint32_t notice : {timeout, userInput, timeout, userInput, timeout, timeout}) {
    passes({.type = keyDown, .keyCode = backtick});
    ASSERT_TRUE(engine.running[0]);
    quartz.now += 40;
    EXPECT_TRUE(quartz.disableTap(notice));
    EXPECT_FALSE(engine.running[0]);
    EXPECT_TRUE(engine.held.empty());
    EXPECT_EQ(quartz.tapEnabled(), true);
  }
}

TEST_F(MacosKeyboardListener, a_tap_that_is_disabled_three_times_in_a_minute_is_given_up_for_good) {
  // In a process of its own, since it is for good.
  const auto giveUp = [this] {
    connectKeyboardListener();
    for (int i = 0; i < 3; ++i) {
      quartz.now += 20;
      quartz.disableTap(timeout);
    }
    const bool dropped = !engine.tap && !quartz.tapEnabled();
    connectKeyboardListener();
    std::_Exit(dropped && !engine.tap && isProcessTrusted() ? 0 : 1);
  };
  EXPECT_EXIT(giveUp(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vorrin
