#include "app/program_values.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace vorrin {
namespace {

bool dryRunWith(const std::vector<const char*>& arguments) {
  readArguments(static_cast<int>(arguments.size()), arguments.data());
  return std::exchange(dryRun, false);
}

TEST(DryRun, is_asked_for_by_one_argument_at_any_place_and_by_nothing_else) {
  EXPECT_TRUE(dryRunWith({"vorrin", "--self-test"}));
  EXPECT_TRUE(dryRunWith({"vorrin", "x", "--ui-test", "--self-test", "y"}));
  EXPECT_FALSE(dryRunWith({}));
  EXPECT_FALSE(dryRunWith({"vorrin", "--ui-test", "-self-test", "--self-tests", "--self-test=1",
                           "--Self-Test", " --self-test", ""}));
}

}  // namespace
}  // namespace vorrin
