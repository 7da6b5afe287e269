#include "filter_test.h"

namespace vorrin::input_helper {
namespace {

using namespace helper_protocol;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(FilterTest, the_start_says_that_the_keyboards_can_be_held) {
  EXPECT_THAT(sent, ElementsAre(FromHelper(Availability{Listening::possible})));
  pass(milliseconds(5000));
  EXPECT_THAT(grabbed, IsEmpty()) << "no shortcut is wanted yet";
}

TEST_F(FilterTest, nothing_is_grabbed_before_compositors_could_open_the_clone) {
  configure({KEY_TAB});
  pass(Filter::startGap - milliseconds(1));
  EXPECT_THAT(grabbed, IsEmpty());
  pass(milliseconds(2));
  EXPECT_THAT(grabbed, ElementsAre(board, otherBoard));
}

TEST_F(FilterTest, a_keyboard_is_not_grabbed_while_one_of_its_keys_is_down) {
  press(KEY_ENTER);
  configure({KEY_TAB});
  pass(milliseconds(5000));
  EXPECT_THAT(grabbed, ElementsAre(otherBoard));
  release(KEY_ENTER);
  EXPECT_THAT(grabbed, ElementsAre(board, otherBoard));
}

TEST_F(FilterTest, a_key_held_when_the_keyboard_is_found_is_waited_for) {
  KeySet down;
  down.set(KEY_A);
  filter.addKeyboard(7, down, now);
  grabWithTab();
  EXPECT_FALSE(grabbed.contains(7));
  release(KEY_A, 7);
  EXPECT_TRUE(grabbed.contains(7));
}

TEST_F(GrabbedFilter, a_press_that_everybody_saw_before_the_grab_gives_the_keyboard_back) {
  filter.receive(board, {key(KEY_A, 1)}, now - Filter::startGap, now);
  EXPECT_THAT(grabbed, ElementsAre(otherBoard));
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(GrabbedFilter, a_keyboard_is_given_back_once_its_keys_are_up) {
  press(KEY_A);
  configure({});
  EXPECT_THAT(grabbed, ElementsAre(board));
  release(KEY_A);
  EXPECT_THAT(grabbed, IsEmpty());
  EXPECT_EQ(emitted.back(), Frame{key(KEY_A, 0)});
}

TEST_F(GrabbedFilter,
       a_key_typed_just_before_its_keyboard_was_given_back_comes_and_stays_not_down) {
  const auto typed = now;
  now += milliseconds(1);
  configure({});
  for (const int value : {1, 0, 1}) filter.receive(board, {key(KEY_A, value)}, typed, now);
  EXPECT_THAT(emitted,
              ElementsAre(Frame{key(KEY_A, 1)}, Frame{key(KEY_A, 0)}, Frame{key(KEY_A, 1)}));
  emitted.clear();
  receive({scanCode(30), key(KEY_A, 0)});
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_A, 0)}));
}

TEST_F(GrabbedFilter, keyboards_are_given_back_with_no_shortcut_and_keys_typed_then_come_once) {
  configure({});
  EXPECT_THAT(grabbed, IsEmpty());
  press(KEY_A);
  release(KEY_A);
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, another_program_s_grab_makes_the_listener_unavailable_until_it_ends) {
  busy = {otherBoard};
  configure({KEY_TAB});
  pass(Filter::startGap + milliseconds(1));
  EXPECT_EQ(sent.back(), FromHelper(Availability{Listening::keyboardTaken}));
  EXPECT_THAT(grabbed, IsEmpty());
  busy.clear();
  pass(Filter::retryTime + milliseconds(1));
  EXPECT_EQ(sent.back(), FromHelper(Availability{Listening::possible}));
}

TEST_F(FilterTest, looking_for_another_program_s_grab_keeps_no_keyboard) {
  busy = {otherBoard};
  configure({KEY_TAB});
  pass(Filter::startGap + milliseconds(1));
  configure({}, false);
  pass(milliseconds(10'000));
  EXPECT_THAT(grabbed, IsEmpty());
}

TEST_F(GrabbedFilter, without_keyboards_nothing_is_due_and_the_tap_has_to_be_enabled_anew) {
  press(KEY_TAB);
  filter.removeAll();
  EXPECT_FALSE(filter.nextDeadline());
  filter.addKeyboard(board, {}, now);
  filter.announce(now);
  pass(milliseconds(5000));
  forget();
  press(KEY_TAB);
  filter.answer({1, 1}, now);
  EXPECT_THAT(sent, IsEmpty());
}

TEST_F(GrabbedFilter, a_keyboard_plugged_in_later_is_taken_after_its_start_gap) {
  filter.addKeyboard(9, {}, now);
  pass(Filter::startGap - milliseconds(1));
  EXPECT_FALSE(grabbed.contains(9));
  pass(milliseconds(2));
  EXPECT_TRUE(grabbed.contains(9));
}

}  // namespace
}  // namespace vorrin::input_helper
