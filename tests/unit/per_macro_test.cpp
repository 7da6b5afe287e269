#include "engine/per_macro.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

TEST(PerMacroDeathTest, any_index_other_than_0_and_1_ends_the_process) {
  PerMacro<int> numbers{1, 2};
  const PerMacro<int>& constant = numbers;
  EXPECT_DEATH(numbers[2] = 0, "Fatal error: Index out of range");
  EXPECT_DEATH(numbers[-1] = 0, "Fatal error: Index out of range");
  EXPECT_DEATH(static_cast<void>(constant[256]), "Fatal error: Index out of range");
}

}  // namespace
}  // namespace vorrin
