#include "platform/event_tap.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <vector>

#include "fresh_trust.h"

namespace vorrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t keyMask = 0xC00;

class MacosEventTap : public testing::Test {
 protected:
  MacosEventTap() {
    forgetTrust(quartz);
    seen.clear();
    verdict = TapVerdict::pass;
    enabledWhenSeen.clear();
    current = this;
  }
  ~MacosEventTap() override { current = nullptr; }

  static TapVerdict callback(const TapEvent& event) {
    seen.push_back(event);
    enabledWhenSeen.push_back(current->quartz.tapEnabled().value_or(false));
    return verdict;
  }

  std::optional<EventTap> created() {
    return EventTap::create(keyMask, &callback, [this] {
      ++invalidations;
      if (dropsWhatEnded) dropped.reset();
    });
  }

  EventTap made() {
    auto tap = created();
    if (!tap) throw std::logic_error("the stand-in refused the tap");
    return *tap;
  }

  /// A tap as the program uses it, with the calls made so far forgotten.
  EventTap connected() {
    EventTap tap = made();
    tap.addToMainRunLoop();
    tap.setEnabled(true);
    quartz.takeCalls();
    return tap;
  }

  static inline MacosEventTap* current = nullptr;
  static inline std::vector<TapEvent> seen;
  static inline std::vector<bool> enabledWhenSeen;
  static inline TapVerdict verdict = TapVerdict::pass;
  QuartzStandIn quartz;
  int invalidations = 0;
  /// Lets go of `dropped` when it is told that the tap ended.
  bool dropsWhatEnded = false;
  std::unique_ptr<EventTap> dropped;
};

TEST_F(MacosEventTap, is_never_made_while_the_process_is_not_trusted) {
  quartz.trusted = false;
  EXPECT_FALSE(created());
  EXPECT_THAT(quartz.calls, ElementsAre("AXIsProcessTrusted()"));
}

TEST_F(MacosEventTap, returns_the_very_event_that_passes_and_null_for_one_that_is_swallowed) {
  const EventTap tap = connected();
  EXPECT_TRUE(quartz.deliver({.type = 10, .keyCode = 50}));
  verdict = TapVerdict::swallow;
  EXPECT_FALSE(quartz.deliver({.type = 10, .keyCode = 50}));
}

TEST_F(MacosEventTap, reads_three_fields_and_the_flags_for_the_callback_and_does_nothing_else) {
  const EventTap tap = connected();
  quartz.deliver({.type = 11, .keyCode = 97, .autorepeat = 1, .flags = 0x1E0000, .userData = 5});
  EXPECT_THAT(quartz.takeCalls(),
              testing::UnorderedElementsAre(
                  "CGEventGetIntegerValueField(event, 42)", "CGEventGetIntegerValueField(event, 9)",
                  "CGEventGetIntegerValueField(event, 8)", "CGEventGetFlags(event)"));
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].type, EventType::keyUp);
  EXPECT_EQ(seen[0].keyCode, 97);
  EXPECT_EQ(seen[0].autorepeat, 1);
  EXPECT_EQ(seen[0].flags, 0x1E0000U);
  EXPECT_EQ(seen[0].userData, 5);
}

TEST_F(MacosEventTap, never_swallows_a_notice) {
  const EventTap tap = connected();
  verdict = TapVerdict::swallow;
  EXPECT_TRUE(quartz.deliverNotice(0xFFFFFFFE));
  EXPECT_TRUE(quartz.deliverNotice(0xFFFFFFFF));
  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[0].type, EventType::tapDisabledByTimeout);
  EXPECT_EQ(seen[1].type, EventType::tapDisabledByUserInput);
}

TEST_F(MacosEventTap, watches_the_grant_ten_times_a_second_even_while_menus_are_open) {
  const EventTap tap = made();
  tap.addToMainRunLoop();
  EXPECT_THAT(quartz.calls, testing::Contains(testing::EndsWith(", 0.1)")));
  EXPECT_EQ(quartz.calls.back(), "CFRunLoopAddTimer(main, timer, kCFRunLoopCommonModes)");
}

TEST_F(MacosEventTap, is_disabled_before_anything_else_and_once_when_the_grant_is_lost) {
  const EventTap tap = connected();
  quartz.trusted = false;
  quartz.fireTimers();
  EXPECT_THAT(quartz.takeCalls(),
              ElementsAre("AXIsProcessTrusted()", "CGEventTapEnable(tap, false)"));
  quartz.fireTimers();
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].type, EventType::tapDisabledByUserInput);
  EXPECT_THAT(enabledWhenSeen, ElementsAre(false));
}

TEST_F(MacosEventTap, that_is_not_wanted_stays_disabled_when_the_grant_is_back) {
  const EventTap tap = connected();
  quartz.trusted = false;
  quartz.fireTimers();
  tap.setEnabled(false);
  quartz.trusted = true;
  quartz.fireTimers();
  EXPECT_EQ(quartz.tapEnabled(), false);
}

TEST_F(MacosEventTap, has_ended_when_the_grant_is_back_and_it_cannot_be_enabled_any_more) {
  dropsWhatEnded = true;
  dropped = std::make_unique<EventTap>(connected());
  quartz.trusted = false;
  quartz.fireTimers();
  quartz.trusted = true;
  quartz.tapStaysOff = true;
  quartz.fireTimers();
  EXPECT_FALSE(dropped);
  EXPECT_EQ(quartz.liveObjects(), 0U);
}

TEST_F(MacosEventTap, that_died_unheard_counts_as_disabled_by_the_system_and_is_enabled_again) {
  const EventTap tap = connected();
  quartz.switchTapOff();
  quartz.fireTimers();
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].type, EventType::tapDisabledByTimeout);
  quartz.fireTimers();
  EXPECT_EQ(quartz.tapEnabled(), true);
}

TEST_F(MacosEventTap, keeps_the_system_from_slowing_the_program_down_while_it_exists) {
  EXPECT_THAT(quartz.activities(), IsEmpty());
  {
    const EventTap tap = made();
    EXPECT_THAT(quartz.activities(), ElementsAre("listening"));
  }
  EXPECT_THAT(quartz.activities(), IsEmpty());
}

TEST_F(MacosEventTap, tells_when_its_port_is_taken_away_and_so_does_the_systems_own_callback) {
  const EventTap tap = connected();
  quartz.invalidatePort();
  EXPECT_THAT(quartz.takeCalls(), ElementsAre("systemsOwnCallback(tap)"));
  EXPECT_EQ(invalidations, 1);
  EXPECT_EQ(quartz.scheduledTimers(), 0U);
}

TEST_F(MacosEventTap, is_disabled_and_taken_out_of_the_event_path_with_its_last_copy) {
  std::optional<EventTap> tap = connected();
  std::optional<EventTap> copy = tap;
  tap.reset();
  EXPECT_THAT(quartz.takeCalls(), IsEmpty());
  copy.reset();
  EXPECT_THAT(quartz.takeCalls(),
              ElementsAre("CGEventTapEnable(tap, false)", "CFMachPortInvalidate(tap)",
                          "systemsOwnCallback(tap)"));
  EXPECT_EQ(quartz.liveObjects(), 0U);
  EXPECT_EQ(quartz.scheduledTimers(), 0U);
  EXPECT_EQ(invalidations, 0);
}

}  // namespace
}  // namespace vorrin
