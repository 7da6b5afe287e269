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

TEST(PopUpButton, an_empty_one_has_nothing_selected) {
  const PopUpButton empty = PopUpButton::make({});
  EXPECT_EQ(empty.indexOfSelectedItem(), -1);
  EXPECT_EQ(empty.titleOfSelectedItem(), "");
}

TEST(PopUpButton, the_first_item_added_becomes_selected) {
  const PopUpButton made = popUp({"a", "b"});
  EXPECT_EQ(made.titleOfSelectedItem(), "a");
  made.addItems(std::array<std::string, 1>{"c"});
  EXPECT_EQ(made.titleOfSelectedItem(), "a");
  EXPECT_EQ(driver::titles(made), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(PopUpButton, after_all_items_are_removed_the_next_first_one_is_selected) {
  const PopUpButton made = popUp({"a", "b"});
  made.selectItem(1);
  made.removeAllItems();
  EXPECT_EQ(made.indexOfSelectedItem(), -1);
  made.addItems(std::array<std::string, 2>{"c", "d"});
  EXPECT_EQ(made.titleOfSelectedItem(), "c");
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

TEST(PopUpButton, of_equal_titles_the_first_is_selected) {
  const PopUpButton made = popUp({"a", "b", "b"});
  made.selectItem("b");
  EXPECT_EQ(made.indexOfSelectedItem(), 1);
}

TEST(PopUpButton, selecting_performs_no_action) {
  int calls = 0;
  const PopUpButton made = PopUpButton::make({"act", [&calls](const Button&) { ++calls; }});
  made.addItems(std::array<std::string, 2>{"a", "b"});
  made.selectItem(1);
  made.selectItem("a");
  made.removeAllItems();
  EXPECT_EQ(calls, 0);
}

TEST(PopUpButton, titles_come_back_exactly) {
  for (const std::string& title : {std::string("a & b"), std::string("לילה"), std::string("a\nb"),
                                   std::string("  "), std::string(10000, 'w')}) {
    EXPECT_EQ(popUp({title}).titleOfSelectedItem(), title);
  }
}

TEST(PopUpButton, an_index_outside_ends_the_process) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(popUp({"a"}).selectItem(1), "Precondition failed");
}

}  // namespace
}  // namespace vorrin
