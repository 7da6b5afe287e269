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

TEST_F(AlertSheet, it_shows_its_texts_and_its_buttons) {
  ask(question());
  EXPECT_THAT(driver::sheetTexts(window), ElementsAre("Sure?", "It cannot be undone."));
  EXPECT_THAT(driver::sheetButtons(window), ElementsAre("Yes", "Cancel"));
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

TEST_F(AlertSheet, a_first_button_called_cancel_is_the_default_too) {
  Alert alert = question();
  alert.buttons = {"Cancel", "Yes"};
  ask(alert);
  EXPECT_EQ(driver::defaultSheetButton(window), "Cancel");
  answerWith(Key::enter);
  EXPECT_THAT(answers, ElementsAre(0));
}

TEST_F(AlertSheet, a_second_sheet_is_refused_and_never_answers) {
  ask(question());
  int refused = 0;
  Alert second = question();
  second.messageText = "Really?";
  beginSheet(second, window, [&refused](int) { ++refused; });
  EXPECT_EQ(driver::sheetTexts(window).front(), "Sure?");
  answerWith(Key::enter);
  EXPECT_FALSE(driver::hasSheet(window));
  EXPECT_EQ(refused, 0);
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

TEST_F(AlertSheet, the_accessory_has_the_keyboard_and_its_text_is_selected) {
  Alert alert = question();
  const TextField field = TextField::field("old name");
  alert.accessory = field;
  ask(alert);
  EXPECT_TRUE(driver::waitFor([&field] { return driver::hasKeyboard(field); }));
  EXPECT_EQ(driver::selectedText(field), "old name");
}

TEST_F(AlertSheet, the_accessory_outlives_the_sheet_for_its_answer) {
  const TextField field = TextField::field("old");
  std::string typed;
  Alert alert = question();
  alert.accessory = field;
  beginSheet(alert, window, [&typed, field](int) { typed = field.text(); });
  ASSERT_TRUE(driver::waitFor([&field] { return driver::hasKeyboard(field); }));
  driver::enter(window, "new");
  driver::pressInSheet(window, Key::enter);
  EXPECT_TRUE(driver::waitFor([&typed] { return typed == "new"; }));
  driver::deleteWhatIsLeft();
  EXPECT_EQ(field.text(), "new");
}

}  // namespace
}  // namespace vorrin
