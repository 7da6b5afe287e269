#include "platform/pop_up_button.h"

#include <gtest/gtest.h>

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

TEST(QtPopUpButton, typing_finds_a_title_and_performs_the_action) {
  std::vector<std::string> chosen;
  PopUpButton made;
  made = PopUpButton::make({"choose", [&made, &chosen](const Button&) {
                              chosen.push_back(made.titleOfSelectedItem());
                            }});
  made.addItems(std::vector<std::string>{"a", "farm", "game"});
  QTest::keyClicks(&widgetOf(made), "g");
  EXPECT_EQ(chosen, std::vector<std::string>{"game"});
}

}  // namespace
}  // namespace vorrin
