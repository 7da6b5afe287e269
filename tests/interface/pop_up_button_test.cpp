#include "platform/pop_up_button.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "driver.h"

namespace vorrin {
namespace {

PopUpButton popUp(const std::vector<std::string>& titles) {
  const PopUpButton made = PopUpButton::make({});
  made.addItems(titles);
  return made;
}

TEST(PopUpButton, items_are_selected_by_index_and_by_exact_title) {
  const PopUpButton made = popUp({"a", "A", "a "});
  made.selectItem(2);
  EXPECT_EQ(made.titleOfSelectedItem(), "a ");
  made.selectItem("A");
  EXPECT_EQ(made.indexOfSelectedItem(), 1);
  made.selectItem("nowhere");
  EXPECT_EQ(made.indexOfSelectedItem(), 1);
}

TEST(PopUpButton, titles_come_back_exactly) {
  for (const std::string& title : {std::string("a & b"), std::string("לילה"), std::string("a\nb"),
                                   std::string("  "), std::string(10000, 'w')}) {
    EXPECT_EQ(popUp({title}).titleOfSelectedItem(), title);
  }
}

}  // namespace
}  // namespace vorrin
