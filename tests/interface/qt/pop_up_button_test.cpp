#include "platform/pop_up_button.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QTest>
#include <vector>

#include "qt_driver.h"

namespace vorrin {
namespace {

PopUpButton popUp(const std::vector<std::string>& titles) {
  const PopUpButton made = PopUpButton::make({});
  made.addItems(titles);
  return made;
}

TEST(QtPopUpButton, a_long_title_asks_for_room_but_does_not_insist) {
  const PopUpButton made = popUp({std::string(80, 'W')});
  EXPECT_LE(widgetOf(made).minimumSizeHint().width(), 100);
  EXPECT_GT(widgetOf(made).sizeHint().width(), 400);
}

TEST(QtPopUpButton, it_is_as_wide_as_its_widest_title_whichever_is_selected) {
  const PopUpButton made = popUp({"a", "a much longer title"});
  const int before = widgetOf(made).sizeHint().width();
  made.selectItem(1);
  EXPECT_EQ(widgetOf(made).sizeHint().width(), before);
}

struct TypedTitle : testing::Test {
  TypedTitle() { QApplication::setKeyboardInputInterval(60'000); }
  ~TypedTitle() override { QApplication::setKeyboardInputInterval(usualInterval_); }

 private:
  int usualInterval_ = QApplication::keyboardInputInterval();
};

TEST_F(TypedTitle, is_searched_with_its_blanks) {
  const PopUpButton made = popUp({"game", "my farm", "my game", "mygame"});
  QTest::keyClicks(&widgetOf(made), "my g");
  EXPECT_EQ(made.titleOfSelectedItem(), "my game");
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(TypedTitle, performs_the_action_for_each_item_come_to) {
  std::vector<std::string> chosen;
  PopUpButton made;
  made = PopUpButton::make({"choose", [&made, &chosen](const Button&) {
                              chosen.push_back(made.titleOfSelectedItem());
                            }});
  made.addItems(std::vector<std::string>{"a", "my farm", "my game"});
  QTest::keyClicks(&widgetOf(made), "my g");
  EXPECT_EQ(chosen, (std::vector<std::string>{"my farm", "my game"}));
}

TEST_F(TypedTitle, has_no_blank_in_front_since_that_opens_the_menu) {
  const PopUpButton made = popUp({"a", "b"});
  auto& widget = widgetOf(made);
  widget.show();
  QTest::keyClick(&widget, Qt::Key_Space);
  EXPECT_NE(QApplication::activePopupWidget(), nullptr);
  widgetOf<QComboBox>(made).hidePopup();
}

}  // namespace
}  // namespace vorrin
