#include "platform/pop_up_button.h"

#include <array>

#include "interface_test.h"

namespace vorrin {
namespace {

PopUpButton popUp(const std::vector<std::string>& titles) {
  const PopUpButton made = PopUpButton::make({});
  made.addItems(titles);
  return made;
}

TEST(PopUpButton, an_empty_one_has_nothing_selected) {
  const PopUpButton empty = PopUpButton::make({});
  EXPECT_EQ(empty.numberOfItems(), 0);
  EXPECT_EQ(empty.indexOfSelectedItem(), -1);
  EXPECT_EQ(empty.titleOfSelectedItem(), "");
}

TEST(PopUpButton, the_first_item_added_becomes_selected) {
  const PopUpButton made = popUp({"a", "b"});
  EXPECT_EQ(made.titleOfSelectedItem(), "a");
  made.addItems(std::array<std::string, 1>{"c"});
  EXPECT_EQ(made.titleOfSelectedItem(), "a");
  EXPECT_EQ(made.numberOfItems(), 3);
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
  const PopUpButton made = PopUpButton::make({&calls, "act", [&calls](const Button&) { ++calls; }});
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

TEST(PopUpButton, a_long_title_asks_for_room_but_does_not_insist) {
  const PopUpButton made = popUp({std::string(80, 'W')});
  EXPECT_LE(widgetOf(made).minimumSizeHint().width(), 100);
  EXPECT_GT(widgetOf(made).sizeHint().width(), 400);
}

TEST(PopUpButton, it_is_as_wide_as_its_widest_title_whichever_is_selected) {
  const PopUpButton made = popUp({"a", "a much longer title"});
  const int before = widgetOf(made).sizeHint().width();
  made.selectItem(1);
  EXPECT_EQ(widgetOf(made).sizeHint().width(), before);
}

TEST(PopUpButton, an_index_outside_ends_the_process) {
  EXPECT_DEATH(popUp({"a"}).selectItem(1), "Precondition failed");
}

}  // namespace
}  // namespace vorrin
