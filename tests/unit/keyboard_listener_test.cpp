#include "bridge/keyboard_listener.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "bridge/event_synthesis.h"
#include "support/keys.h"
#include "support/listener_test.h"

namespace vorrin {
namespace {

constexpr std::uint16_t letter = 0;

using test::ConnectedTest;
using test::ListenerTest;

TEST(EventMaskBit, is_the_bit_of_the_raw_value) {
  EXPECT_EQ(eventMaskBit(EventType::leftMouseDown), 2U);
  EXPECT_EQ(eventMaskBit(EventType::keyDown), 0x400U);
  EXPECT_EQ(eventMaskBit(EventType::keyUp), 0x800U);
}

TEST(EventMaskBit, is_0_for_raw_values_of_64_and_more) {
  EXPECT_EQ(eventMaskBit(EventType::tapDisabledByTimeout), 0U);
  EXPECT_EQ(eventMaskBit(EventType::tapDisabledByUserInput), 0U);
}

TEST_F(ListenerTest, connecting_makes_a_tap_for_presses_and_releases_of_keys_and_enables_it) {
  connectKeyboardListener();
  ASSERT_TRUE(engine.tap);
  EXPECT_EQ(fake::system().tapMasks, std::vector<std::uint64_t>{0xC00});
  EXPECT_EQ(fake::system().tapsAdded, 1U);
  EXPECT_EQ(fake::system().tapSwitches, std::vector<bool>{true});
  EXPECT_TRUE(fake::tapIsListening());
}

TEST_F(ListenerTest, without_permission_no_tap_is_made) {
  fake::system().trusted = false;
  connectKeyboardListener();
  EXPECT_FALSE(engine.tap);
  EXPECT_EQ(fake::system().promptingQueries, 1U);
  EXPECT_TRUE(fake::system().tapMasks.empty());
}

TEST_F(ListenerTest, the_prompt_comes_again_at_every_attempt_without_permission) {
  fake::system().trusted = false;
  connectKeyboardListener();
  connectKeyboardListener();
  EXPECT_EQ(fake::system().promptingQueries, 2U);
}

TEST_F(ListenerTest, a_second_connection_changes_nothing_and_asks_nothing) {
  connectKeyboardListener();
  connectKeyboardListener();
  EXPECT_EQ(fake::system().tapMasks.size(), 1U);
  EXPECT_EQ(fake::system().tapsAdded, 1U);
  EXPECT_EQ(fake::system().tapSwitches.size(), 1U);
  EXPECT_EQ(fake::system().promptingQueries, 1U);
}

TEST_F(ListenerTest, a_tap_that_the_system_refuses_is_absent) {
  fake::system().refusesTaps = true;
  connectKeyboardListener();
  EXPECT_FALSE(engine.tap);
  EXPECT_EQ(fake::system().tapMasks.size(), 1U);
  EXPECT_EQ(fake::system().tapsAdded, 0U);
  EXPECT_TRUE(fake::system().tapSwitches.empty());
}

TEST_F(ListenerTest, connecting_can_be_tried_again_after_a_refusal) {
  fake::system().refusesTaps = true;
  connectKeyboardListener();
  fake::system().refusesTaps = false;
  connectKeyboardListener();
  EXPECT_TRUE(fake::tapIsListening());
}

TEST_F(ListenerTest, connecting_starts_no_macro) {
  connectKeyboardListener();
  EXPECT_EQ(engine.running, (PerMacro<bool>{false, false}));
}

TEST_F(ListenerTest, no_event_arrives_before_connecting) {
  EXPECT_EQ(press(tab), TapVerdict::pass);
  EXPECT_FALSE(engine.running[1]);
}

TEST_F(ConnectedTest, a_shortcut_is_swallowed_from_press_to_release_and_toggles_its_macro) {
  EXPECT_EQ(press(tab), TapVerdict::swallow);
  EXPECT_TRUE(engine.running[1]);
  EXPECT_EQ(repeat(tab), TapVerdict::swallow);
  EXPECT_EQ(release(tab), TapVerdict::swallow);
  EXPECT_TRUE(engine.running[1]);
  EXPECT_EQ(press(tab), TapVerdict::swallow);
  EXPECT_FALSE(engine.running[1]);
}

TEST_F(ConnectedTest, other_keys_pass) {
  EXPECT_EQ(press(letter), TapVerdict::pass);
  EXPECT_EQ(repeat(letter), TapVerdict::pass);
  EXPECT_EQ(release(letter), TapVerdict::pass);
}

TEST_F(ConnectedTest, escape_stops_every_running_macro_and_passes) {
  press(tab);
  press(backtick);
  EXPECT_EQ(press(escapeKey), TapVerdict::pass);
  EXPECT_EQ(engine.running, (PerMacro<bool>{false, false}));
  EXPECT_EQ(release(escapeKey), TapVerdict::pass);
}

TEST_F(ConnectedTest, any_autorepeat_value_but_0_is_a_repetition) {
  for (const std::int64_t value : {std::int64_t{1}, std::int64_t{-1}, std::int64_t{1} << 40}) {
    fake::feed({.type = EventType::keyDown, .keyCode = tab, .autorepeat = value});
    EXPECT_FALSE(engine.running[1]) << value;
  }
}

TEST_F(ConnectedTest, a_shortcut_with_command_control_option_or_shift_passes) {
  for (const std::uint64_t flag : {event_flags::maskCommand, event_flags::maskControl,
                                   event_flags::maskAlternate, event_flags::maskShift}) {
    EXPECT_EQ(press(tab, flag), TapVerdict::pass) << flag;
    EXPECT_EQ(press(tab, flag | event_flags::maskAlphaShift), TapVerdict::pass) << flag;
    EXPECT_FALSE(engine.running[1]) << flag;
  }
}

TEST_F(ConnectedTest, every_other_flag_counts_as_no_modifier) {
  constexpr std::uint64_t modifiers = event_flags::maskCommand | event_flags::maskControl |
                                      event_flags::maskAlternate | event_flags::maskShift;
  EXPECT_EQ(press(tab, event_flags::maskAlphaShift), TapVerdict::swallow);
  EXPECT_TRUE(engine.running[1]);
  release(tab);
  EXPECT_EQ(press(tab, event_flags::maskNumericPad), TapVerdict::swallow);
  EXPECT_FALSE(engine.running[1]);
  release(tab);
  EXPECT_EQ(press(tab, ~modifiers), TapVerdict::swallow);
  EXPECT_TRUE(engine.running[1]);
}

TEST_F(ConnectedTest, the_programs_own_events_pass_untouched) {
  for (const auto type : {EventType::keyDown, EventType::keyUp}) {
    EXPECT_EQ(fake::feed({.type = type, .keyCode = tab, .userData = marker}), TapVerdict::pass);
  }
  EXPECT_FALSE(engine.running[1]);
  EXPECT_TRUE(engine.held.empty());
}

TEST_F(ConnectedTest, an_own_release_does_not_end_the_users_press) {
  press(tab);
  EXPECT_EQ(fake::feed({.type = EventType::keyUp, .keyCode = tab, .userData = marker}),
            TapVerdict::pass);
  EXPECT_TRUE(engine.held.contains(tab));
}

TEST_F(ConnectedTest, an_own_escape_stops_nothing) {
  press(tab);
  fake::feed({.type = EventType::keyDown, .keyCode = escapeKey, .userData = marker});
  EXPECT_TRUE(engine.running[1]);
}

TEST_F(ConnectedTest, user_data_of_other_programs_does_not_mark_an_event) {
  fake::feed({.type = EventType::keyDown, .keyCode = tab, .userData = marker + 1});
  EXPECT_TRUE(engine.running[1]);
  fake::feed({.type = EventType::keyDown,
              .keyCode = backtick,
              .userData = marker | (std::int64_t{1} << 32)});
  EXPECT_TRUE(engine.running[0]);
}

TEST_F(ConnectedTest, a_key_code_of_an_own_event_is_not_looked_at) {
  EXPECT_EQ(fake::feed({.type = EventType::keyDown, .keyCode = -1, .userData = marker}),
            TapVerdict::pass);
}

TEST_F(ConnectedTest, while_the_window_is_active_shortcuts_pass_and_toggle_nothing) {
  fake::setApplicationActive(true);
  EXPECT_EQ(press(tab), TapVerdict::pass);
  EXPECT_EQ(release(tab), TapVerdict::pass);
  EXPECT_EQ(engine.running, (PerMacro<bool>{false, false}));
  EXPECT_TRUE(engine.held.empty());
}

TEST_F(ConnectedTest, while_the_window_is_active_escape_still_stops_the_macros) {
  press(tab);
  release(tab);
  fake::setApplicationActive(true);
  EXPECT_EQ(press(escapeKey), TapVerdict::pass);
  EXPECT_FALSE(engine.running[1]);
}

TEST_F(ConnectedTest,
       a_key_held_since_before_the_window_became_active_is_swallowed_to_its_release) {
  press(tab);
  fake::setApplicationActive(true);
  updateClaimedKeys();
  EXPECT_EQ(repeat(tab), TapVerdict::swallow);
  EXPECT_EQ(release(tab), TapVerdict::swallow);
  EXPECT_EQ(press(tab), TapVerdict::pass);
  EXPECT_TRUE(engine.running[1]);
}

class DisabledTap : public ConnectedTest, public testing::WithParamInterface<EventType> {};

TEST_P(DisabledTap, stops_the_macros_forgets_the_keys_and_is_enabled_again) {
  press(tab);
  press(backtick);
  EXPECT_EQ(fake::disableTap(GetParam()), TapVerdict::pass);
  EXPECT_EQ(engine.running, (PerMacro<bool>{false, false}));
  EXPECT_TRUE(engine.held.empty());
  EXPECT_EQ(fake::system().tapSwitches, std::vector<bool>{true});
  EXPECT_TRUE(fake::tapIsListening());
}

TEST_P(DisabledTap, is_told_whatever_the_rest_of_the_event_says) {
  press(tab);
  EXPECT_EQ(keyboardTapCallback({.type = GetParam(), .keyCode = -1, .userData = marker}),
            TapVerdict::pass);
  EXPECT_FALSE(engine.running[1]);
}

TEST_P(DisabledTap, also_stops_macros_started_from_the_window_while_it_is_active) {
  engine.toggle(0);
  fake::setApplicationActive(true);
  fake::disableTap(GetParam());
  EXPECT_FALSE(engine.running[0]);
}

TEST_P(DisabledTap, after_it_the_next_press_toggles_again) {
  press(tab);
  fake::disableTap(GetParam());
  EXPECT_EQ(press(tab), TapVerdict::swallow);
  EXPECT_TRUE(engine.running[1]);
}

TEST_P(DisabledTap, without_a_tap_nothing_is_enabled) {
  engine.toggle(0);
  engine.tap.reset();
  EXPECT_EQ(keyboardTapCallback({.type = GetParam()}), TapVerdict::pass);
  EXPECT_FALSE(engine.running[0]);
  EXPECT_TRUE(fake::system().tapSwitches.empty());
}

INSTANTIATE_TEST_SUITE_P(Tap, DisabledTap,
                         testing::Values(EventType::tapDisabledByTimeout,
                                         EventType::tapDisabledByUserInput),
                         [](const auto& cause) {
                           return cause.param == EventType::tapDisabledByTimeout ? "by_timeout"
                                                                                 : "by_user_input";
                         });

TEST_F(ConnectedTest, a_tap_that_ends_is_dropped_and_stops_everything) {
  press(tab);
  fake::invalidateTap();
  EXPECT_FALSE(engine.tap);
  EXPECT_TRUE(engine.held.empty());
  EXPECT_FALSE(engine.running[1]);
}

TEST_F(ConnectedTest, a_tap_that_ends_stops_macros_also_while_the_own_window_is_active) {
  engine.toggle(0);
  fake::setApplicationActive(true);
  fake::invalidateTap();
  EXPECT_FALSE(engine.running[0]);
}

TEST_F(ConnectedTest, after_a_tap_ended_a_new_one_can_be_made) {
  fake::invalidateTap();
  connectKeyboardListener();
  EXPECT_EQ(fake::system().tapMasks.size(), 2U);
  EXPECT_EQ(press(tab), TapVerdict::swallow);
}

using ListenerDeathTest = ConnectedTest;

TEST_F(ListenerDeathTest, a_negative_key_code_ends_the_process) {
  EXPECT_DEATH(press(-1), "Fatal error: Negative value is not representable");
  EXPECT_DEATH(release(std::numeric_limits<std::int64_t>::min()), "Negative value");
}

TEST_F(ListenerDeathTest, a_key_code_above_65535_ends_the_process) {
  EXPECT_DEATH(press(65536), "Fatal error: Not enough bits to represent the passed value");
  EXPECT_DEATH(press(std::numeric_limits<std::int64_t>::max()), "Not enough bits");
}

TEST_F(ListenerDeathTest,
       a_key_code_out_of_range_ends_the_process_also_while_the_window_is_active) {
  fake::setApplicationActive(true);
  EXPECT_DEATH(press(65536), "Not enough bits");
}

TEST_F(ConnectedTest, key_codes_at_both_ends_of_the_range_pass) {
  EXPECT_EQ(press(0), TapVerdict::pass);
  EXPECT_EQ(press(65535), TapVerdict::pass);
}

}  // namespace
}  // namespace vorrin
