#include "bridge/keyboard_listener.h"

#include <gmock/gmock.h>

#include "bridge/event_synthesis.h"
#include "bridge/program_engine.h"
#include "program_activity.h"
#include "quartz_stand_in.h"

// The listener from Quartz to the engine and back.

namespace vorrin {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t keyDown = 10;
constexpr std::uint32_t keyUp = 11;
constexpr std::int64_t backtick = 50;
constexpr std::int64_t escape = 53;

class MacosKeyboardListener : public testing::Test {
 protected:
  MacosKeyboardListener() {
    setProgramActive(false);
    setSessionActive(true);
  }
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

TEST_F(MacosKeyboardListener, makes_no_second_tap) {
  connectKeyboardListener();
  quartz.takeCalls();
  connectKeyboardListener();
  EXPECT_TRUE(quartz.takeCalls().empty());
}

TEST_F(MacosKeyboardListener, makes_no_tap_without_trust) {
  quartz.trusted = false;
  connectKeyboardListener();
  EXPECT_THAT(quartz.takeCalls(),
              ElementsAre("AXIsProcessTrustedWithOptions(kAXTrustedCheckOptionPrompt: true, 1)"));
  EXPECT_FALSE(engine.tap);
}

TEST_F(MacosKeyboardListener, stays_absent_when_the_tap_is_refused) {
  quartz.refusesTaps = true;
  connectKeyboardListener();
  EXPECT_FALSE(engine.tap);
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

TEST_F(MacosKeyboardListener, lets_other_keys_pass) {
  connectKeyboardListener();
  EXPECT_TRUE(passes({.type = keyDown, .keyCode = 0}));
  EXPECT_TRUE(passes({.type = keyUp, .keyCode = 0}));
}

TEST_F(MacosKeyboardListener, lets_the_programs_own_events_pass_unseen) {
  connectKeyboardListener();
  EXPECT_TRUE(passes({.type = keyDown, .keyCode = backtick, .userData = marker}));
  EXPECT_FALSE(engine.running[0]);
  EXPECT_TRUE(engine.held.empty());
}

TEST_F(MacosKeyboardListener, takes_each_of_the_four_modifiers_for_one) {
  connectKeyboardListener();
  for (const std::uint64_t flag : {0x20000U, 0x40000U, 0x80000U, 0x100000U}) {
    EXPECT_TRUE(passes({.type = keyDown, .keyCode = backtick, .flags = flag})) << std::hex << flag;
    EXPECT_FALSE(engine.running[0]);
  }
}

TEST_F(MacosKeyboardListener, takes_caps_lock_pad_help_and_function_for_no_modifiers) {
  connectKeyboardListener();
  for (const std::uint64_t flag : {0x10000U, 0x200000U, 0x400000U, 0x800000U}) {
    EXPECT_FALSE(passes({.type = keyDown, .keyCode = backtick, .flags = flag})) << std::hex << flag;
    passes({.type = keyUp, .keyCode = backtick});
  }
}

TEST_F(MacosKeyboardListener, escape_stops_the_macros_and_passes_even_in_the_own_window) {
  connectKeyboardListener();
  engine.toggle(0);
  engine.toggle(1);
  setProgramActive(true);
  EXPECT_TRUE(passes({.type = keyDown, .keyCode = escape}));
  EXPECT_FALSE(engine.running[0]);
  EXPECT_FALSE(engine.running[1]);
}

TEST_F(MacosKeyboardListener, a_shortcut_typed_into_the_own_window_passes) {
  connectKeyboardListener();
  setProgramActive(true);
  EXPECT_TRUE(passes({.type = keyDown, .keyCode = backtick}));
  EXPECT_FALSE(engine.running[0]);
}

TEST_F(MacosKeyboardListener, a_shortcut_pressed_before_the_own_window_came_up_is_released) {
  connectKeyboardListener();
  passes({.type = keyDown, .keyCode = backtick});
  setProgramActive(true);
  EXPECT_FALSE(passes({.type = keyUp, .keyCode = backtick}));
  EXPECT_TRUE(engine.held.empty());
}

TEST_F(MacosKeyboardListener, in_a_locked_session_every_key_passes_and_nothing_starts) {
  connectKeyboardListener();
  setSessionActive(false);
  EXPECT_TRUE(passes({.type = keyDown, .keyCode = backtick}));
  EXPECT_TRUE(passes({.type = keyUp, .keyCode = backtick}));
  EXPECT_FALSE(engine.running[0]);
}

TEST_F(MacosKeyboardListener, a_shortcut_held_when_the_session_was_locked_counts_as_released) {
  connectKeyboardListener();
  passes({.type = keyDown, .keyCode = backtick});
  setSessionActive(false);
  EXPECT_TRUE(passes({.type = keyUp, .keyCode = backtick}));
  EXPECT_TRUE(engine.held.empty());
}

TEST_F(MacosKeyboardListener, a_tap_disabled_by_the_system_stops_everything_and_is_enabled_again) {
  connectKeyboardListener();
  for (const std::uint32_t notice : {0xFFFFFFFE, 0xFFFFFFFF}) {
    passes({.type = keyDown, .keyCode = backtick});
    ASSERT_TRUE(engine.running[0]);
    EXPECT_TRUE(quartz.disableTap(notice));
    EXPECT_FALSE(engine.running[0]);
    EXPECT_TRUE(engine.held.empty());
    EXPECT_EQ(quartz.tapEnabled(), true);
  }
}

TEST_F(MacosKeyboardListener, a_lost_grant_stops_the_macros_and_holds_the_tap_back) {
  connectKeyboardListener();
  passes({.type = keyDown, .keyCode = backtick});
  quartz.trusted = false;
  quartz.fireTimers();
  EXPECT_FALSE(engine.running[0]);
  EXPECT_TRUE(engine.held.empty());
  EXPECT_EQ(quartz.tapEnabled(), false);
  EXPECT_TRUE(engine.tap) << "the tap is still there, only off";
}

TEST_F(MacosKeyboardListener, a_lost_grant_stops_the_macros_also_while_the_own_window_is_active) {
  connectKeyboardListener();
  passes({.type = keyDown, .keyCode = backtick});
  setProgramActive(true);
  quartz.trusted = false;
  quartz.fireTimers();
  EXPECT_FALSE(engine.running[0]) << "no tap hears Escape any more";
}

TEST_F(MacosKeyboardListener, listens_again_when_the_grant_is_back) {
  connectKeyboardListener();
  quartz.trusted = false;
  quartz.fireTimers();
  quartz.trusted = true;
  quartz.fireTimers();
  EXPECT_FALSE(passes({.type = keyDown, .keyCode = backtick}));
  EXPECT_TRUE(engine.running[0]);
}

TEST_F(MacosKeyboardListener, a_tap_that_ended_by_itself_is_gone_and_can_be_made_anew) {
  connectKeyboardListener();
  passes({.type = keyDown, .keyCode = backtick});
  quartz.invalidatePort();
  EXPECT_FALSE(engine.tap);
  EXPECT_FALSE(engine.running[0]);
  connectKeyboardListener();
  EXPECT_TRUE(engine.tap);
}

TEST_F(MacosKeyboardListener, a_key_code_that_is_none_ends_the_process) {
  connectKeyboardListener();
  EXPECT_DEATH(passes({.type = keyDown, .keyCode = -1}), "Negative value is not representable");
  EXPECT_DEATH(passes({.type = keyDown, .keyCode = 65536}),
               "Not enough bits to represent the passed value");
}

}  // namespace
}  // namespace vorrin
