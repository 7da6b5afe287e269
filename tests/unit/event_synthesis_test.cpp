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

TEST_F(EventSynthesisTest, macro_0_presses_and_releases_the_key_of_the_chosen_digit) {
  const std::array<std::uint16_t, 10> keyOfDigit{29, 18, 19, 20, 21, 23, 22, 26, 28, 25};
  for (engine.digit = 0; engine.digit <= 9; ++engine.digit) {
    fake::system().posted.clear();
    emit(0);
    const std::uint16_t key = keyOfDigit[static_cast<std::size_t>(engine.digit)];
    ASSERT_EQ(posted().size(), 2U);
    EXPECT_EQ(posted()[0].type, EventType::keyDown);
    EXPECT_EQ(posted()[1].type, EventType::keyUp);
    for (const auto& event : posted()) EXPECT_EQ(event.keyCode, key) << engine.digit;
  }
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

TEST_F(EventSynthesisTest, both_events_of_an_action_are_marked_and_posted_as_one_batch) {
  emit(0);
  emit(1);
  EXPECT_EQ(fake::system().batches, (std::vector<std::size_t>{2, 2}));
  for (const auto& event : posted()) EXPECT_EQ(event.userData, marker);
  EXPECT_EQ(refreshes, 0);
}

TEST_F(EventSynthesisTest, a_pointer_that_cannot_be_found_is_not_clicked_at_but_keys_are_pressed) {
  fake::system().pointer.reset();
  emit(1);
  EXPECT_TRUE(posted().empty());
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

TEST_F(EventSynthesisTest,
       losing_the_permission_stops_both_macros_at_the_next_tick_then_refreshes) {
  bool stopped = false;
  engine.emit = [&](int macro) {
    emitMacro(macro, [&] { stopped = !engine.running[0] && !engine.running[1]; });
  };
  engine.toggle(0);
  engine.toggle(1);
  fake::system().trusted = false;
  fake::advance(1);
  EXPECT_TRUE(stopped);
  EXPECT_TRUE(posted().empty());
  EXPECT_EQ(fake::system().promptingQueries, 0U);
}

TEST_F(EventSynthesisTest, macros_are_permitted_with_valid_settings_a_tap_and_trust_only) {
  EXPECT_FALSE(macrosPermitted(true));
  connectKeyboardListener();
  fake::setApplicationActive(true);
  EXPECT_TRUE(macrosPermitted(true));
  EXPECT_FALSE(macrosPermitted(false));
  fake::system().trusted = false;
  fake::system().promptingQueries = 0;
  EXPECT_FALSE(macrosPermitted(true));
  EXPECT_EQ(fake::system().promptingQueries, 0U);
}

}  // namespace
}  // namespace vorrin
