#include "engine/per_macro.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vorrin {
namespace {

TEST(PerMacro, holds_the_keyboard_macros_value_first) {
  const PerMacro<std::string> names{"keyboard", "mouse"};
  EXPECT_EQ(names[0], "keyboard");
  EXPECT_EQ(names[1], "mouse");
}

TEST(PerMacro, is_made_of_default_values_when_none_are_given) {
  const PerMacro<int> numbers;
  EXPECT_EQ(numbers, (PerMacro<int>{0, 0}));
}

TEST(PerMacro, can_be_written_by_index) {
  PerMacro<bool> flags{false, false};
  flags[1] = true;
  EXPECT_EQ(flags, (PerMacro<bool>{false, true}));
}

TEST(PerMacro, is_walked_in_macro_order) {
  const PerMacro<int> numbers{3, 5};
  EXPECT_EQ(std::vector<int>(numbers.begin(), numbers.end()), (std::vector<int>{3, 5}));
}

TEST(PerMacro, differs_when_one_value_differs) {
  EXPECT_FALSE((PerMacro<int>{1, 2}) == (PerMacro<int>{1, 3}));
  EXPECT_FALSE((PerMacro<int>{1, 2}) == (PerMacro<int>{0, 2}));
}

TEST(PerMacroDeathTest, any_other_index_ends_the_process) {
  PerMacro<int> numbers{1, 2};
  const PerMacro<int>& constant = numbers;
  EXPECT_DEATH(numbers[2] = 0, "Fatal error: Index out of range");
  EXPECT_DEATH(numbers[-1] = 0, "Fatal error: Index out of range");
  EXPECT_DEATH(static_cast<void>(constant[256]), "Fatal error: Index out of range");
}

}  // namespace
}  // namespace vorrin
