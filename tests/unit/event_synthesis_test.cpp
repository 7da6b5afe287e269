#include "bridge/event_synthesis.h"

#include <gtest/gtest.h>

#include <vector>

#include "bridge/keyboard_listener.h"
#include "support/system_test.h"

namespace vorrin {
namespace {

class EventSynthesisTest : public test::SystemTest {
 protected:
  void emit(int macro) {
    emitMacro(macro, [this] { ++refreshes; });
  }

  int refreshes = 0;
};

const std::vector<SyntheticEvent>& posted() {
  return fake::system().posted;
}

TEST(Marker, spells_the_programs_name) {
  EXPECT_EQ(marker, 1'448'235'598);
}

TEST(Digits, are_the_keys_above_the_letters) {
  EXPECT_EQ(digits, (std::array<std::uint16_t, 10>{29, 18, 19, 20, 21, 23, 22, 26, 28, 25}));
}

TEST_F(EventSynthesisTest, macro_0_presses_and_releases_the_chosen_digit_key) {
  emit(0);
  ASSERT_EQ(posted().size(), 2U);
  EXPECT_EQ(posted()[0].type, EventType::keyDown);
  EXPECT_EQ(posted()[1].type, EventType::keyUp);
  EXPECT_EQ(posted()[0].keyCode, 18);
  EXPECT_EQ(posted()[1].keyCode, 18);
}

TEST_F(EventSynthesisTest, every_digit_has_its_own_key) {
  for (int digit = 0; digit <= 9; ++digit) {
    engine.digit = digit;
    emit(0);
    EXPECT_EQ(posted().back().keyCode, digits[static_cast<std::size_t>(digit)]) << digit;
  }
  EXPECT_EQ(posted().size(), 20U);
}

TEST_F(EventSynthesisTest, macro_1_clicks_the_left_button_where_the_pointer_is) {
  fake::system().pointer = PointerLocation{-120.5, 4000.25};
  emit(1);
  ASSERT_EQ(posted().size(), 2U);
  EXPECT_EQ(posted()[0].type, EventType::leftMouseDown);
  EXPECT_EQ(posted()[1].type, EventType::leftMouseUp);
  for (const auto& event : posted()) {
    EXPECT_EQ(event.location.x, -120.5);
    EXPECT_EQ(event.location.y, 4000.25);
  }
}

TEST_F(EventSynthesisTest, any_other_macro_clicks_too) {
  emit(2);
  emit(-1);
  ASSERT_EQ(posted().size(), 4U);
  EXPECT_EQ(posted()[0].type, EventType::leftMouseDown);
  EXPECT_EQ(posted()[2].type, EventType::leftMouseDown);
}

TEST_F(EventSynthesisTest, both_events_of_an_action_are_posted_as_one_batch) {
  emit(0);
  emit(1);
  EXPECT_EQ(fake::system().batches, (std::vector<std::size_t>{2, 2}));
}

TEST_F(EventSynthesisTest, every_event_is_marked) {
  emit(0);
  emit(1);
  for (const auto& event : posted()) EXPECT_EQ(event.userData, marker);
}

TEST_F(EventSynthesisTest, a_pointer_that_cannot_be_found_is_not_clicked_at) {
  fake::system().pointer.reset();
  emit(1);
  EXPECT_TRUE(posted().empty());
  EXPECT_EQ(refreshes, 0);
}

TEST_F(EventSynthesisTest, keys_are_pressed_also_when_the_pointer_cannot_be_found) {
  fake::system().pointer.reset();
  emit(0);
  EXPECT_EQ(posted().size(), 2U);
}

TEST_F(EventSynthesisTest, while_the_window_is_active_nothing_is_posted_and_the_macro_goes_on) {
  engine.emit = [this](int macro) { emit(macro); };
  engine.toggle(0);
  fake::setApplicationActive(true);
  fake::advance(1);
  EXPECT_TRUE(posted().empty());
  EXPECT_TRUE(engine.running[0]);
  fake::setApplicationActive(false);
  fake::advance(0.05);
  EXPECT_EQ(posted().size(), 2U);
}

TEST_F(EventSynthesisTest, while_the_window_is_active_the_permission_is_not_looked_at) {
  engine.toggle(0);
  fake::setApplicationActive(true);
  fake::system().trusted = false;
  emit(0);
  EXPECT_TRUE(engine.running[0]);
  EXPECT_EQ(fake::system().silentQueries, 0U);
}

TEST_F(EventSynthesisTest, losing_the_permission_stops_both_macros_and_refreshes) {
  engine.toggle(0);
  engine.toggle(1);
  fake::system().trusted = false;
  emit(0);
  EXPECT_EQ(engine.running, (PerMacro<bool>{false, false}));
  EXPECT_TRUE(posted().empty());
  EXPECT_EQ(refreshes, 1);
}

TEST_F(EventSynthesisTest, the_window_is_refreshed_after_the_macros_were_stopped) {
  engine.toggle(1);
  fake::system().trusted = false;
  bool stopped = false;
  emitMacro(1, [&] { stopped = !engine.running[1]; });
  EXPECT_TRUE(stopped);
}

TEST_F(EventSynthesisTest, losing_the_permission_without_a_window_to_refresh_stops_the_macros) {
  engine.toggle(1);
  fake::system().trusted = false;
  emitMacro(1, nullptr);
  EXPECT_FALSE(engine.running[1]);
}

TEST_F(EventSynthesisTest, losing_the_permission_takes_effect_at_the_next_tick) {
  engine.emit = [this](int macro) { emit(macro); };
  engine.toggle(0);
  fake::advance(0.1);
  fake::system().trusted = false;
  fake::advance(1);
  EXPECT_EQ(posted().size(), 4U);
  EXPECT_EQ(refreshes, 1);
  EXPECT_FALSE(engine.running[0]);
}

TEST_F(EventSynthesisTest, emitting_never_prompts_and_refreshes_nothing_while_trusted) {
  emit(0);
  emit(1);
  EXPECT_EQ(fake::system().promptingQueries, 0U);
  EXPECT_EQ(refreshes, 0);
}

TEST_F(EventSynthesisTest, the_programs_own_keys_do_not_reach_the_engine) {
  connectKeyboardListener();
  engine.keys = {18, 48};
  updateClaimedKeys();
  emit(0);
  EXPECT_FALSE(engine.running[0]);
  EXPECT_TRUE(engine.held.empty());
}

TEST_F(EventSynthesisTest, macros_are_permitted_with_valid_settings_a_tap_and_trust) {
  connectKeyboardListener();
  EXPECT_TRUE(macrosPermitted(true));
}

TEST_F(EventSynthesisTest, macros_are_permitted_also_while_the_window_is_active) {
  connectKeyboardListener();
  fake::setApplicationActive(true);
  EXPECT_TRUE(macrosPermitted(true));
}

TEST_F(EventSynthesisTest, invalid_settings_forbid_macros_and_nothing_else_is_asked) {
  connectKeyboardListener();
  EXPECT_FALSE(macrosPermitted(false));
  EXPECT_EQ(fake::system().silentQueries, 0U);
}

TEST_F(EventSynthesisTest, a_missing_tap_forbids_macros_and_trust_is_not_asked) {
  EXPECT_FALSE(macrosPermitted(true));
  EXPECT_EQ(fake::system().silentQueries, 0U);
}

TEST_F(EventSynthesisTest, missing_trust_forbids_macros_without_a_prompt) {
  connectKeyboardListener();
  fake::system().trusted = false;
  fake::system().promptingQueries = 0;
  EXPECT_FALSE(macrosPermitted(true));
  EXPECT_EQ(fake::system().silentQueries, 1U);
  EXPECT_EQ(fake::system().promptingQueries, 0U);
}

using EventSynthesisDeathTest = EventSynthesisTest;

TEST_F(EventSynthesisDeathTest, a_digit_outside_0_to_9_ends_the_process) {
  engine.digit = 10;
  EXPECT_DEATH(emit(0), "Fatal error: Index out of range");
  engine.digit = -1;
  EXPECT_DEATH(emit(0), "Fatal error: Index out of range");
}

TEST_F(EventSynthesisTest, a_digit_out_of_range_does_not_concern_clicks) {
  engine.digit = 10;
  emit(1);
  EXPECT_EQ(posted().size(), 2U);
}

}  // namespace
}  // namespace vorrin
