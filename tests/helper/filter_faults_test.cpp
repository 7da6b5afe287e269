#include "filter_test.h"

namespace vorrin::input_helper {
namespace {

using namespace helper_protocol;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(FilterTest, without_an_answer_in_time_the_key_passes_and_the_tap_is_disabled) {
  grabWithTab();
  press(KEY_TAB);
  press(KEY_A);
  pass(Filter::answerLimit + milliseconds(2));
  EXPECT_EQ(sent.back(), FromHelper(Disabled{1}));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_TAB, 1)}, Frame{key(KEY_A, 1)}));
}

TEST_F(FilterTest, after_a_missing_answer_the_next_shortcuts_pass_at_once) {
  grabWithTab();
  press(KEY_TAB);
  pass(Filter::answerLimit + milliseconds(2));
  release(KEY_TAB);
  forget();
  press(KEY_TAB);
  EXPECT_THAT(sent, IsEmpty());
}

TEST_F(FilterTest, after_being_enabled_again_the_tap_is_asked_again) {
  grabWithTab();
  press(KEY_TAB);
  pass(Filter::answerLimit + milliseconds(2));
  release(KEY_TAB);
  configure({KEY_TAB});
  pass(Filter::quietTime + milliseconds(1));
  press(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(Question(2, KEY_TAB, 0)));
}

TEST_F(FilterTest, a_late_answer_changes_nothing) {
  grabWithTab();
  press(KEY_TAB);
  pass(Filter::answerLimit + milliseconds(2));
  emitted.clear();
  EXPECT_TRUE(filter.answer({1, true}, now));
  release(KEY_TAB);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_TAB, 0)}));
}

TEST_F(FilterTest, an_answer_to_no_question_is_refused) {
  grabWithTab();
  EXPECT_FALSE(filter.answer({1, true}, now));
}

TEST_F(FilterTest, unplugging_with_a_shortcut_down_tells_its_release) {
  grabWithTab();
  press(KEY_TAB);
  ASSERT_TRUE(answer(true));
  forget();
  filter.removeKeyboard(board, now);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_TAB, 0, 0, 0})));
}

TEST_F(FilterTest, unplugging_during_a_question_lets_the_other_keyboards_go_on) {
  grabWithTab();
  press(KEY_TAB);
  press(KEY_A, otherBoard);
  filter.removeKeyboard(board, now);
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, 0, 0, 0)));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_A, 1)}));
  EXPECT_TRUE(filter.answer({1, true}, now));
}

TEST_F(FilterTest, unplugging_forgets_the_modifiers_of_the_keyboard) {
  grabWithTab();
  press(KEY_LEFTSHIFT, otherBoard);
  filter.removeKeyboard(otherBoard, now);
  press(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(Question(1, KEY_TAB, 0)));
}

TEST_F(FilterTest, lost_events_are_made_up_for) {
  grabWithTab();
  press(KEY_LEFTCTRL);
  emitted.clear();
  KeySet down;
  down.set(KEY_LEFTSHIFT);
  filter.resynchronise(board, down, now);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_LEFTCTRL, 0), key(KEY_LEFTSHIFT, 1)}));
}

TEST_F(FilterTest, a_shortcut_found_down_after_lost_events_toggles_nothing) {
  grabWithTab();
  KeySet down;
  down.set(KEY_TAB);
  filter.resynchronise(board, down, now);
  release(KEY_TAB);
  EXPECT_THAT(sent, IsEmpty());
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, a_shortcut_found_up_after_lost_events_is_told_as_released) {
  grabWithTab();
  press(KEY_TAB);
  ASSERT_TRUE(answer(true));
  filter.resynchronise(board, {}, now);
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, 0, 0, 0)));
}

TEST_F(FilterTest, the_panic_chord_is_read_even_while_a_question_waits) {
  grabWithTab();
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
