#include "filter_test.h"

namespace vorrin::input_helper {
namespace {

using namespace helper_protocol;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

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
