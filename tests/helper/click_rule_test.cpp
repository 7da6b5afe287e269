#include "platform/linux/input/helper/click_rule.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

namespace vorrin::helper {
namespace {

TEST(ClickRule, takes_effect_with_a_desktop_that_began_after_it_was_placed) {
  const std::filesystem::path folder = ::mkdtemp(std::string("/tmp/vorrin-rule-XXXXXX").data());
  const auto rule = folder / "rule";
  const auto desktop = folder / "desktop";
  std::ofstream{desktop};
  EXPECT_EQ(clickRule(rule, desktop), ClickRule::missing);
  // Times are told in steps of a few milliseconds.
  while (clickRule(rule, desktop) != ClickRule::installedLater) {
    std::filesystem::remove(rule);
    std::ofstream{rule};
    // A package's files bring along the time at which they were made.
    std::filesystem::last_write_time(rule, {});
  }
  while (clickRule(rule, desktop) != ClickRule::inEffect) {
    std::filesystem::remove(desktop);
    std::ofstream{desktop};
  }
  EXPECT_EQ(clickRule(rule, folder / "absent"), ClickRule::inEffect) << "nobody knows";
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace vorrin::helper
