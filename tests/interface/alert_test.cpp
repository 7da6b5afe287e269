#include "alert_test.h"

namespace vorrin {
namespace {

using driver::Key;
using testing::ElementsAre;

TEST_F(AlertSheet, it_returns_at_once_and_answers_later) {
  ask(question());
  EXPECT_TRUE(driver::hasSheet(window));
  EXPECT_TRUE(answers.empty());
}

TEST_F(AlertSheet, enter_answers_with_the_first_button) {
  ask(question());
  answerWith(Key::enter);
  EXPECT_THAT(answers, ElementsAre(0));
  EXPECT_FALSE(driver::hasSheet(window));
}

TEST_F(AlertSheet, escape_answers_with_cancel_wherever_it_stands) {
  ask(question());
  answerWith(Key::escape);
  Alert reversed = question();
  reversed.buttons = {"Cancel", "Yes"};
  ask(reversed);
  answerWith(Key::escape);
  EXPECT_THAT(answers, ElementsAre(1, 0));
}

TEST_F(AlertSheet, its_answer_may_ask_the_next_question) {
  bool asked = false;
  beginSheet(question(), window, [this, &asked](int) {
    ask(question());
    asked = true;
  });
  driver::pressInSheet(window, Key::enter);
  ASSERT_TRUE(driver::waitFor([&asked] { return asked; }));
  ASSERT_TRUE(driver::hasSheet(window));
  answerWith(Key::enter);
  EXPECT_THAT(answers, ElementsAre(0));
}

}  // namespace
}  // namespace vorrin
