#include <gmock/gmock.h>

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QTest>
#include <vector>

#include "platform/alert.h"
#include "platform/linux/widgets/sheet.h"
#include "qt_driver.h"

namespace vorrin {
namespace {

using driver::deleteWhatIsLeft;
using testing::ElementsAre;

/// A window that is asked something.
class QtAlertSheet : public testing::Test {
 protected:
  QtAlertSheet() : window(Window::make({580, 400}, window_style::titled)) {
    window.orderFront();
    driver::activate(window);
  }
  ~QtAlertSheet() override {
    driver::takeAway(window);
    driver::deleteWhatIsLeft();
  }

  void ask(const Alert& alert) {
    beginSheet(alert, window, [this](int answer) { answers.push_back(answer); });
  }

  static Alert question() {
    return {.messageText = "Sure?",
            .informativeText = "It cannot be undone.",
            .buttons = {"Yes", "Cancel"}};
  }

  [[nodiscard]] Sheet* sheet() const { return driver::sheetOf(window); }
  [[nodiscard]] WindowWidget& parent() const { return widgetOf(window); }
  /// The plane that the question stands on.
  [[nodiscard]] QWidget& panel() const {
    return *sheet()->findChild<QPushButton*>()->parentWidget();
  }
  [[nodiscard]] QRect placeInWindow(const QWidget& widget) const {
    return {widget.mapTo(&parent(), QPoint(0, 0)), widget.size()};
  }

  void press(Qt::Key key) const { QTest::keyClick(parent().windowHandle(), key); }

  /// As a tiling window manager does it, whatever the smallest size is.
  void resizeWindow(int width, int height) const {
    parent().windowHandle()->resize(width, height);
    ASSERT_TRUE(driver::waitFor([&] { return parent().size() == QSize(width, height); }));
  }

  Window window;
  std::vector<int> answers;
};

TEST_F(QtAlertSheet, its_answer_may_ask_the_next_question) {
  beginSheet(question(), window, [this](int) { ask(question()); });
  press(Qt::Key_Return);
  EXPECT_TRUE(sheet()->isVisible());
  press(Qt::Key_Escape);
  EXPECT_THAT(answers, ElementsAre(1));
}

TEST_F(QtAlertSheet, it_hangs_inside_its_window_and_moves_with_it) {
  ask(question());
  EXPECT_FALSE(sheet()->isWindow());
  EXPECT_EQ(QGuiApplication::focusWindow(), parent().windowHandle());
  const QRect place = placeInWindow(panel());
  EXPECT_TRUE(parent().rect().contains(place));
  EXPECT_LT(place.top(), 60);
  EXPECT_NEAR(place.center().x(), parent().rect().center().x(), 1);
}

TEST_F(QtAlertSheet, the_window_behind_is_dimmed) {
  window.contentView().setBackgroundColor(Color::gray(1));
  const auto brightness = [this] {
    const QImage picture = parent().grab().toImage();
    return picture.pixelColor(5, picture.height() - 5).lightness();
  };
  ASSERT_EQ(brightness(), 255);
  ask(question());
  EXPECT_TRUE(driver::waitFor([&] { return brightness() < 160; }));
  press(Qt::Key_Escape);
  EXPECT_EQ(brightness(), 255);
}

TEST_F(QtAlertSheet, the_button_that_takes_away_is_told_apart) {
  Alert alert = question();
  alert.destructiveButton = 0;
  ask(alert);
  const auto redness = [this](const std::string& title) {
    const QColor color =
        driver::sheetButton(window, title).palette().color(QPalette::Active, QPalette::ButtonText);
    return color.red() - color.green();
  };
  EXPECT_GT(redness("Yes"), 100);
  EXPECT_EQ(redness("Cancel"), 0);
}

TEST_F(QtAlertSheet, tab_goes_round_inside_in_both_directions) {
  Alert alert = question();
  alert.accessory = TextField::field("old");
  ask(alert);
  for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
    std::vector<const QWidget*> stops;
    for (int i = 0; i < 3; ++i) {
      press(key);
      stops.push_back(parent().focusWidget());
      EXPECT_TRUE(sheet()->isAncestorOf(stops.back()));
    }
    EXPECT_EQ(stops[2], &widgetOf(*alert.accessory));
    EXPECT_NE(stops[0], stops[1]);
  }
}

TEST_F(QtAlertSheet, the_keyboard_is_where_it_was_afterwards) {
  const TextField field = TextField::field("");
  window.contentView().addTopCentered(field, 10, 100);
  driver::click(field);
  ask(question());
  EXPECT_FALSE(driver::hasKeyboard(field));
  press(Qt::Key_Return);
  EXPECT_TRUE(driver::hasKeyboard(field));
}

TEST_F(QtAlertSheet, escape_does_nothing_where_nothing_can_be_cancelled) {
  Alert alert = question();
  alert.buttons = {"Left", "Right"};
  ask(alert);
  press(Qt::Key_Escape);
  EXPECT_TRUE(answers.empty());
  EXPECT_TRUE(sheet()->isVisible());
}

TEST_F(QtAlertSheet, a_field_is_as_wide_as_the_texts) {
  Alert alert = question();
  const TextField field = TextField::field("old");
  field.setWidth(300);
  alert.accessory = field;
  ask(alert);
  for (const QLabel* text : sheet()->findChildren<QLabel*>()) EXPECT_EQ(text->width(), 300);
}

TEST_F(QtAlertSheet,
       long_words_wrap_inside_the_sheet_and_endless_ones_leave_its_buttons_in_the_window) {
  ask(question());
  const QSize before = panel().size();
  press(Qt::Key_Escape);
  Alert alert = question();
  alert.messageText = "Delete “" + std::string(80, 'W') + "”?";
  ask(alert);
  EXPECT_EQ(panel().width(), before.width());
  EXPECT_GT(panel().height(), before.height());
  press(Qt::Key_Escape);
  alert.messageText = std::string(100000, 'W');
  ask(alert);
  EXPECT_TRUE(parent().rect().contains(placeInWindow(panel())));
}

TEST_F(QtAlertSheet, it_is_as_wide_as_its_buttons_need) {
  resizeWindow(800, 400);
  Alert alert = question();
  alert.buttons = {"Close", "Allow for a very long time", "Ask every single time", "Take it back"};
  ask(alert);
  for (const QPushButton* button : sheet()->findChildren<QPushButton*>()) {
    EXPECT_GE(button->width(), button->sizeHint().width());
  }
  EXPECT_TRUE(parent().rect().contains(placeInWindow(panel())));
}

TEST_F(QtAlertSheet, in_a_narrow_window_its_texts_wrap_instead) {
  resizeWindow(300, 400);
  ask(question());
  EXPECT_TRUE(driver::waitFor([this] { return !sheet()->horizontalScrollBar()->isVisible(); }));
  EXPECT_TRUE(parent().rect().contains(placeInWindow(panel())));
}

TEST_F(QtAlertSheet, in_a_window_smaller_than_itself_the_keyboard_brings_its_buttons_into_sight) {
  Alert alert = question();
  for (int i = 0; i < 100; ++i) alert.informativeText += " and more";
  ask(alert);
  resizeWindow(300, 120);
  ASSERT_TRUE(driver::waitFor([this] { return sheet()->verticalScrollBar()->isVisible(); }));
  for (const char* title : {"Cancel", "Yes"}) {
    press(Qt::Key_Tab);
    const QWidget& button = driver::sheetButton(window, title);
    ASSERT_TRUE(button.hasFocus());
    EXPECT_TRUE(parent().rect().contains(placeInWindow(button))) << title;
  }
  press(Qt::Key_Escape);
  EXPECT_THAT(answers, ElementsAre(1));
}

TEST_F(QtAlertSheet, screen_readers_hear_the_question_in_a_dialog) {
  ask(question());
  const QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(sheet());
  EXPECT_EQ(heard->role(), QAccessible::Dialog);
  EXPECT_TRUE(heard->state().modal);
  EXPECT_EQ(heard->text(QAccessible::Name), "Sure?");
  EXPECT_EQ(heard->text(QAccessible::Description), "It cannot be undone.");
}

}  // namespace
}  // namespace vorrin
