#include "platform/alert.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <vector>

#include "qt_driver.h"

namespace vorrin {
namespace {

using driver::deleteWhatIsLeft;

class QtAlertSheet : public testing::Test {
 protected:
  QtAlertSheet() : window(Window::make({580, 400}, window_style::titled)) {
    window.orderFront();
    driver::activate(window);
  }
  ~QtAlertSheet() override { deleteWhatIsLeft(); }

  void ask(const Alert& alert) {
    beginSheet(alert, window, [this](int answer) { answers.push_back(answer); });
  }

  [[nodiscard]] Sheet* sheet() const { return driver::sheetOf(window); }

  void press(Qt::Key key) const {
    ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
    QTest::keyClick(sheet()->windowHandle(), key);
  }

  static Alert question() {
    return {.messageText = "Sure?",
            .informativeText = "It cannot be undone.",
            .buttons = {"Yes", "Cancel"},
            .accessory = std::nullopt};
  }

  Window window;
  std::vector<int> answers;
};

TEST_F(QtAlertSheet, it_is_modal_to_its_window_alone) {
  ask(question());
  EXPECT_TRUE(sheet()->isVisible());
  EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
}

TEST_F(QtAlertSheet, escape_does_nothing_where_nothing_can_be_cancelled) {
  Alert alert = question();
  alert.buttons = {"Left", "Right"};
  ask(alert);
  press(Qt::Key_Escape);
  EXPECT_TRUE(answers.empty());
  EXPECT_TRUE(sheet()->isVisible());
  sheet()->close();
  EXPECT_TRUE(sheet()->isVisible());
}

TEST_F(QtAlertSheet, its_close_button_means_cancel) {
  ask(question());
  sheet()->close();
  EXPECT_EQ(answers, std::vector<int>{1});
}

TEST_F(QtAlertSheet, it_never_answers_when_its_window_goes_away) {
  ask(question());
  const QPointer<QDialog> open = sheet();
  window = Window();
  deleteWhatIsLeft();
  EXPECT_TRUE(open.isNull());
  EXPECT_TRUE(answers.empty());
}

TEST_F(QtAlertSheet, an_accessory_that_nobody_keeps_goes_away_with_the_answer) {
  QPointer<QWidget> widget;
  {
    Alert alert = question();
    alert.accessory = TextField::field("old");
    widget = &widgetOf(*alert.accessory);
    ask(alert);
  }
  press(Qt::Key_Return);
  deleteWhatIsLeft();
  EXPECT_TRUE(widget.isNull());
}

TEST_F(QtAlertSheet, the_window_below_gets_no_clicks) {
  int clicks = 0;
  const Button button = Button::push("below", {"act", [&clicks](const Button&) { ++clicks; }});
  window.contentView().addTopCentered(button, 10, 100);
  window.contentView().layoutSubtreeIfNeeded();
  QWidget& parent = widgetOf(window);
  const QPoint place = widgetOf(button).mapTo(&parent, QPoint(20, 10));
  ask(question());
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
  QTest::mouseClick(parent.windowHandle(), Qt::LeftButton, {}, place);
  EXPECT_EQ(clicks, 0);
  press(Qt::Key_Escape);
  QTest::mouseClick(parent.windowHandle(), Qt::LeftButton, {}, place);
  EXPECT_EQ(clicks, 1);
}

TEST_F(QtAlertSheet, long_words_wrap_inside_the_sheet) {
  ask(question());
  const int width = sheet()->width();
  const int height = sheet()->height();
  press(Qt::Key_Escape);
  Alert alert = question();
  alert.messageText = "Delete “" + std::string(80, 'W') + "”?";
  ask(alert);
  EXPECT_EQ(sheet()->width(), width);
  EXPECT_GT(sheet()->height(), height);
}

TEST_F(QtAlertSheet, an_endless_text_leaves_the_buttons_on_the_screen) {
  Alert alert = question();
  alert.messageText = std::string(100000, 'W');
  ask(alert);
  EXPECT_LT(sheet()->height(), 500);
}

TEST_F(QtAlertSheet, a_long_explanation_is_shown_whole) {
  Alert alert = question();
  for (int i = 0; i < 100; ++i) alert.informativeText += " and more";
  ask(alert);
  const auto texts = sheet()->findChildren<QLabel*>();
  ASSERT_EQ(texts.size(), 2);
  EXPECT_GT(texts[1]->height(), 10 * texts[0]->height());
}

TEST_F(QtAlertSheet, it_is_as_wide_as_its_buttons_need) {
  Alert alert = question();
  alert.buttons = {"Close", "Allow for a very long time", "Ask every single time", "Take it back"};
  ask(alert);
  for (const QPushButton* button : sheet()->findChildren<QPushButton*>()) {
    EXPECT_GE(button->width(), button->sizeHint().width());
    EXPECT_LE(button->geometry().right(), sheet()->width());
  }
  const auto texts = sheet()->findChildren<QLabel*>();
  EXPECT_EQ(texts[0]->width(), sheet()->width() - 40);
}

TEST_F(QtAlertSheet, screen_readers_hear_the_question) {
  ask(question());
  EXPECT_EQ(sheet()->accessibleName(), "Sure?");
  EXPECT_EQ(sheet()->accessibleDescription(), "It cannot be undone.");
}

}  // namespace
}  // namespace vorrin
