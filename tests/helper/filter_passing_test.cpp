#include "filter_test.h"

namespace vorrin::input_helper {
namespace {

using namespace helper_protocol;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(GrabbedFilter, keys_that_are_no_shortcut_go_on_unasked_and_in_order) {
  press(KEY_LEFTSHIFT);
  press(KEY_B);
  release(KEY_B);
  release(KEY_LEFTSHIFT);
  EXPECT_THAT(sent, IsEmpty());
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_LEFTSHIFT, 1)}, Frame{key(KEY_B, 1)},
                                   Frame{key(KEY_B, 0)}, Frame{key(KEY_LEFTSHIFT, 0)}));
}

TEST_F(GrabbedFilter, a_shortcut_waits_for_its_verdict_and_swallowed_leaves_no_trace) {
  receive({scanCode(15), key(KEY_TAB, 1)});
  EXPECT_THAT(sent, ElementsAre(FromHelper(Question{1, KEY_TAB, 0})));
  EXPECT_THAT(emitted, IsEmpty());
  ASSERT_TRUE(answer(true));
  receive({key(KEY_TAB, 2)});
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, 0, 1, 1)));
  receive({scanCode(15), key(KEY_TAB, 0)});
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, 0, 0, 0)));
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(GrabbedFilter, a_shortcut_that_may_pass_goes_on_with_its_repeats_and_release) {
  receive({scanCode(15), key(KEY_TAB, 1)});
  ASSERT_TRUE(answer(false));
  receive({key(KEY_TAB, 2)});
  release(KEY_TAB);
  EXPECT_THAT(emitted, ElementsAre(Frame{scanCode(15), key(KEY_TAB, 1)}, Frame{key(KEY_TAB, 2)},
                                   Frame{key(KEY_TAB, 0)}));
}

TEST_F(GrabbedFilter, keys_typed_during_a_question_come_after_its_verdict) {
  press(KEY_TAB);
  press(KEY_A, otherBoard);
  release(KEY_TAB);
  EXPECT_THAT(emitted, IsEmpty());
  ASSERT_TRUE(answer(false));
  EXPECT_THAT(emitted,
              ElementsAre(Frame{key(KEY_TAB, 1)}, Frame{key(KEY_A, 1)}, Frame{key(KEY_TAB, 0)}));
}

TEST_F(FilterTest, two_shortcuts_in_a_row_are_asked_about_one_after_the_other) {
  configure({KEY_TAB, KEY_GRAVE});
  pass(Filter::startGap + milliseconds(1));
  forget();
  press(KEY_TAB);
  press(KEY_GRAVE);
  EXPECT_THAT(sent, ElementsAre(FromHelper(Question{1, KEY_TAB, 0})));
  ASSERT_TRUE(answer(true));
  EXPECT_EQ(sent.back(), FromHelper(Question{2, KEY_GRAVE, 0}));
  ASSERT_TRUE(answer(false));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_GRAVE, 1)}));
}

TEST_F(GrabbedFilter, a_frame_keeps_what_is_beside_the_swallowed_key) {
  receive({scanCode(15), key(KEY_TAB, 1), scanCode(30), key(KEY_A, 1)});
  ASSERT_TRUE(answer(true));
  EXPECT_THAT(emitted, ElementsAre(Frame{scanCode(30), key(KEY_A, 1)}));
}

TEST_F(GrabbedFilter, the_pointer_parts_of_a_keyboard_go_on) {
  const Frame movement{{EV_REL, REL_X, 5}, {EV_REL, REL_Y, -3}, key(BTN_LEFT, 1)};
  receive(movement);
  EXPECT_THAT(emitted, ElementsAre(movement));
}

TEST_F(GrabbedFilter, lights_do_not_travel_to_the_clone) {
  receive({{EV_LED, LED_CAPSL, 1}});
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(GrabbedFilter, modifiers_of_every_keyboard_count) {
  press(KEY_RIGHTCTRL, otherBoard);
  press(KEY_TAB);
  EXPECT_THAT(sent, ElementsAre(FromHelper(Question{1, KEY_TAB, control})));
}

TEST_F(GrabbedFilter, modifiers_are_those_of_the_moment_of_the_press) {
  press(KEY_LEFTSHIFT);
  press(KEY_TAB);
  release(KEY_LEFTSHIFT);
  EXPECT_EQ(sent.back(), FromHelper(Question(1, KEY_TAB, shift)));
  ASSERT_TRUE(answer(false));
  release(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, 0, 0, 0)));
}

TEST_F(GrabbedFilter, caps_lock_is_no_modifier) {
  press(KEY_CAPSLOCK);
  press(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(Question(1, KEY_TAB, 0)));
}

TEST_F(GrabbedFilter, escape_is_told_and_goes_on) {
  press(KEY_ESC);
  release(KEY_ESC);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_ESC, 0, 1, 0}),
                                FromHelper(KeyMoved{KEY_ESC, 0, 0, 0})));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_ESC, 1)}, Frame{key(KEY_ESC, 0)}));
}

TEST_F(FilterTest, escape_is_told_of_a_keyboard_that_is_not_grabbed) {
  configure({});
  forget();
  press(KEY_ESC);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_ESC, 0, 1, 0})));
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, a_disabled_tap_is_told_nothing) {
  configure({KEY_TAB}, false);
  forget();
  press(KEY_ESC);
  press(KEY_TAB);
  EXPECT_THAT(sent, IsEmpty());
}

TEST_F(GrabbedFilter, without_an_answer_in_time_keys_pass_until_the_tap_is_enabled_again) {
  press(KEY_TAB);
  press(KEY_A);
  pass(Filter::answerLimit + milliseconds(2));
  EXPECT_EQ(sent.back(), FromHelper(Disabled{1}));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_TAB, 1)}, Frame{key(KEY_A, 1)}));
  forget();
  EXPECT_TRUE(filter.answer({1, true}, now)) << "a late answer";
  release(KEY_TAB);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_TAB, 0)}));
  forget();
  press(KEY_TAB);
  release(KEY_TAB);
  EXPECT_THAT(sent, IsEmpty());
  configure({KEY_TAB});
  pass(Filter::quietTime + milliseconds(1));
  press(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(Question(2, KEY_TAB, 0)));
}

TEST_F(GrabbedFilter, an_answer_to_no_question_is_refused) {
  EXPECT_FALSE(filter.answer({1, true}, now));
}

TEST_F(GrabbedFilter, unplugging_with_a_shortcut_down_tells_its_release) {
  press(KEY_TAB);
  ASSERT_TRUE(answer(true));
  forget();
  filter.removeKeyboard(board, now);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_TAB, 0, 0, 0})));
}

TEST_F(GrabbedFilter, unplugging_during_a_question_lets_the_other_keyboards_go_on) {
  press(KEY_TAB);
  press(KEY_A, otherBoard);
  filter.removeKeyboard(board, now);
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, 0, 0, 0)));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_A, 1)}));
  EXPECT_TRUE(filter.answer({1, true}, now));
}

TEST_F(GrabbedFilter, unplugging_forgets_the_modifiers_of_the_keyboard) {
  press(KEY_LEFTSHIFT, otherBoard);
  filter.removeKeyboard(otherBoard, now);
  press(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(Question(1, KEY_TAB, 0)));
}

TEST_F(GrabbedFilter, lost_events_are_made_up_for) {
  press(KEY_LEFTCTRL);
  emitted.clear();
  KeySet down;
  down.set(KEY_LEFTSHIFT);
  filter.resynchronise(board, down, now);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_LEFTCTRL, 0), key(KEY_LEFTSHIFT, 1)}));
}

TEST_F(GrabbedFilter, a_shortcut_found_down_after_lost_events_toggles_nothing) {
  KeySet down;
  down.set(KEY_TAB);
  filter.resynchronise(board, down, now);
  release(KEY_TAB);
  EXPECT_THAT(sent, IsEmpty());
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(GrabbedFilter, a_shortcut_found_up_after_lost_events_is_told_as_released) {
  press(KEY_TAB);
  ASSERT_TRUE(answer(true));
  filter.resynchronise(board, {}, now);
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, 0, 0, 0)));
}

TEST_F(GrabbedFilter, the_panic_chord_is_read_even_while_a_question_waits) {
  press(KEY_TAB);
  press(KEY_ESC);
  press(KEY_BACKSPACE);
  EXPECT_FALSE(panicked);
  press(KEY_ENTER);
  EXPECT_TRUE(panicked);
}

TEST_F(FilterTest, the_panic_chord_is_read_from_a_keyboard_that_is_not_grabbed) {
  press(KEY_ENTER);
  press(KEY_BACKSPACE);
  press(KEY_ESC);
  EXPECT_TRUE(panicked);
}

}  // namespace
}  // namespace vorrin::input_helper
