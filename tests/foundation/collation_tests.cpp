#include "platform/linux/foundation/collation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using Names = std::vector<std::string>;

Names sortedBy(const std::string& locale, Names names) {
  const Collation collation(locale);
  std::sort(names.begin(), names.end(), [&](const auto& left, const auto& right) {
    return collation.compare(left, right) < 0;
  });
  return names;
}

TEST(Collation, orders_digits_by_their_number) {
  EXPECT_EQ(sortedBy("en_US.UTF-8", {"Preset 10", "Preset 2", "Preset 1"}),
            (Names{"Preset 1", "Preset 2", "Preset 10"}));
}

TEST(Collation, sets_no_case_before_the_other) {
  EXPECT_EQ(sortedBy("en_US.UTF-8", {"b", "A", "a10", "a9"}), (Names{"A", "a9", "a10", "b"}));
}

TEST(Collation, gives_names_that_differ_only_in_case_a_fixed_order) {
  const Collation collation("en_US.UTF-8");
  EXPECT_TRUE(collation.compare("work", "Work") < 0);
  EXPECT_TRUE(collation.compare("Work", "work") > 0);
}

TEST(Collation, follows_the_rules_of_the_language) {
  const Names names = {"zebra", "ärlig", "apa"};
  EXPECT_EQ(sortedBy("de_DE.UTF-8", names), (Names{"apa", "ärlig", "zebra"}));
  EXPECT_EQ(sortedBy("sv_SE.UTF-8", names), (Names{"apa", "zebra", "ärlig"}));
}

TEST(Collation, does_not_order_by_code_point_in_the_locales_c_and_posix) {
  for (const char* locale : {"C", "POSIX", "C.UTF-8", ""}) {
    EXPECT_EQ(sortedBy(locale, {"b", "A", "a10", "a9", "Z", "é"}),
              (Names{"A", "a9", "a10", "b", "é", "Z"}))
        << locale;
  }
}

TEST(Collation, has_an_order_for_a_language_that_does_not_exist) {
  EXPECT_EQ(sortedBy("qq_QQ.UTF-8@nothing", {"b", "A", "a10", "a9"}),
            (Names{"A", "a9", "a10", "b"}));
  EXPECT_EQ(sortedBy(std::string(5000, 'x'), {"b", "A"}), (Names{"A", "b"}));
}

class CollationLocale : public testing::Test {
 protected:
  CollationLocale() {
    for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) ::unsetenv(variable);
  }

 private:
  const SavedEnvironment environment_{{"LC_ALL", "LC_COLLATE", "LANG"}};
};

TEST_F(CollationLocale, is_empty_when_the_environment_names_none) {
  ::setenv("LC_ALL", "", 1);
  EXPECT_EQ(collationLocale(), "");
}

TEST_F(CollationLocale, is_taken_from_the_variable_that_comes_first_in_precedence) {
  ::setenv("LANG", "de_DE", 1);
  EXPECT_EQ(collationLocale(), "de_DE");
  ::setenv("LC_COLLATE", "sv_SE", 1);
  EXPECT_EQ(collationLocale(), "sv_SE");
  ::setenv("LC_ALL", "fr_FR", 1);
  EXPECT_EQ(collationLocale(), "fr_FR");
}

}  // namespace
}  // namespace vorrin
