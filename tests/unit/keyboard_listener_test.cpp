#include "bridge/keyboard_listener.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "bridge/event_synthesis.h"
#include "support/keys.h"
#include "support/listener_test.h"

namespace vorrin {
namespace {

using test::ConnectedTest;
using test::ListenerTest;

TEST_F(ListenerTest, connecting_makes_a_tap_for_presses_and_releases_of_keys_and_enables_it) {
  connectKeyboardListener();
  ASSERT_TRUE(engine.tap);
  EXPECT_EQ(fake::system().tapMasks, std::vector<std::uint64_t>{0xC00});
  EXPECT_TRUE(fake::tapIsListening());
}

TEST_F(ListenerTest, without_permission_no_tap_is_made_and_every_attempt_prompts) {
  fake::system().trusted = false;
  connectKeyboardListener();
  connectKeyboardListener();
  EXPECT_FALSE(engine.tap);
  EXPECT_EQ(fake::system().promptingQueries, 2U);
}

TEST_F(ListenerTest, a_tap_that_the_system_refuses_is_absent_and_can_be_tried_for_again) {
  fake::system().refusesTaps = true;
  connectKeyboardListener();
  EXPECT_FALSE(engine.tap);
  fake::system().refusesTaps = false;
  connectKeyboardListener();
  EXPECT_TRUE(fake::tapIsListening());
}

TEST_F(ListenerTest, a_second_connection_changes_nothing_and_asks_nothing) {
  connectKeyboardListener();
  connectKeyboardListener();
  EXPECT_EQ(fake::system().tapMasks.size(), 1U);
  EXPECT_EQ(fake::system().promptingQueries, 1U);
}

TEST_F(ConnectedTest, a_shortcut_is_swallowed_from_press_to_release_and_toggles_its_macro) {
  EXPECT_EQ(press(tab), TapVerdict::swallow);
  EXPECT_TRUE(engine.running[1]);
  EXPECT_EQ(repeat(tab), TapVerdict::swallow);
  EXPECT_EQ(release(tab), TapVerdict::swallow);
  EXPECT_TRUE(engine.running[1]);
}

TEST_F(ConnectedTest, only_command_control_option_and_shift_make_a_shortcut_pass) {
  std::uint64_t others = ~std::uint64_t{0};
  for (const std::uint64_t flag : {event_flags::maskCommand, event_flags::maskControl,
                                   event_flags::maskAlternate, event_flags::maskShift}) {
    others &= ~flag;
    EXPECT_EQ(press(tab, flag), TapVerdict::pass) << flag;
    EXPECT_EQ(press(tab, flag | event_flags::maskAlphaShift), TapVerdict::pass) << flag;
  }
  for (const std::uint64_t flags : {event_flags::maskAlphaShift, others}) {
    EXPECT_EQ(press(tab, flags), TapVerdict::swallow) << flags;
    release(tab);
  }
}

TEST_F(ConnectedTest, the_programs_own_events_pass_without_reaching_the_engine) {
  press(tab);
  for (const auto type : {EventType::keyDown, EventType::keyUp}) {
    for (const std::int64_t key :
         {std::int64_t{backtick}, std::int64_t{tab}, std::int64_t{escapeKey}, std::int64_t{-1}}) {
      EXPECT_EQ(fake::feed({.type = type, .keyCode = key, .userData = marker}), TapVerdict::pass);
    }
  }
  EXPECT_EQ(engine.running, (PerMacro<bool>{false, true}));
  EXPECT_EQ(engine.held, std::set<std::uint16_t>{tab});
}

TEST_F(ConnectedTest, user_data_of_other_programs_does_not_mark_an_event) {
  fake::feed({.type = EventType::keyDown, .keyCode = tab, .userData = marker + 1});
  EXPECT_TRUE(engine.running[1]);
  fake::feed({.type = EventType::keyDown,
              .keyCode = backtick,
              .userData = marker | (std::int64_t{1} << 32)});
  EXPECT_TRUE(engine.running[0]);
}

TEST_F(ConnectedTest, while_the_window_is_active_shortcuts_pass_and_escape_still_stops) {
  engine.toggle(0);
  fake::setApplicationActive(true);
  EXPECT_EQ(press(tab), TapVerdict::pass);
  EXPECT_EQ(release(tab), TapVerdict::pass);
  EXPECT_EQ(engine.running, (PerMacro<bool>{true, false}));
  EXPECT_EQ(press(escapeKey), TapVerdict::pass);
  EXPECT_FALSE(engine.running[0]);
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

TEST_F(ConnectedTest, a_disabled_tap_stops_the_macros_forgets_the_keys_and_is_enabled_again) {
  for (const auto cause : {EventType::tapDisabledByTimeout, EventType::tapDisabledByUserInput}) {
    press(tab);
    engine.toggle(0);
    fake::setApplicationActive(true);
    EXPECT_EQ(fake::disableTap(cause), TapVerdict::pass);
    EXPECT_EQ(engine.running, (PerMacro<bool>{false, false}));
    EXPECT_TRUE(fake::tapIsListening());
    fake::setApplicationActive(false);
    EXPECT_EQ(press(tab), TapVerdict::swallow);
    EXPECT_TRUE(engine.running[1]);
    // Whatever the rest of the event says.
    EXPECT_EQ(keyboardTapCallback({.type = cause, .keyCode = -1, .userData = marker}),
              TapVerdict::pass);
    EXPECT_FALSE(engine.running[1]);
  }
}

TEST_F(ConnectedTest, a_tap_that_ends_stops_everything_and_a_new_one_can_be_made) {
  press(tab);
  fake::setApplicationActive(true);
  fake::invalidateTap();
  EXPECT_FALSE(engine.tap);
  EXPECT_FALSE(engine.running[1]);
  fake::setApplicationActive(false);
  connectKeyboardListener();
  EXPECT_EQ(press(tab), TapVerdict::swallow);
}

}  // namespace
}  // namespace vorrin
