#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/text.h"
#include "platform/text_file.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using HomeDirectory = DefaultsSandbox;

TEST_F(HomeDirectory, is_what_the_environment_says_and_that_of_the_account_where_it_names_none) {
  EXPECT_EQ(homeDirectory(), home);
  ::setenv("HOME", "/does/not/exist", 1);
  EXPECT_EQ(homeDirectory(), "/does/not/exist");
  const std::string account = ::getpwuid(::getuid())->pw_dir;
  ::unsetenv("HOME");
  EXPECT_EQ(homeDirectory(), account);
  for (const char* none : {"", "not/absolute"}) {
    ::setenv("HOME", none, 1);
    EXPECT_EQ(homeDirectory(), account);
  }
}

bool zebraIsFirst() {
  std::vector<std::string> names{"zebra", "ärlig"};
  localizedStandardSort(names);
  return names.front() == "zebra";
}

/// Whether "zebra" comes before "ärlig" where the environment names these languages. In a process
/// of its own, since a program finds out its language once.
void expectZebraFirst(bool expected, const char* collation, const char* all) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ::setenv("LC_COLLATE", collation, 1);
        ::setenv("LC_ALL", all, 1);
        std::exit(zebraIsFirst() ? 1 : 0);
      },
      testing::ExitedWithCode(expected ? 1 : 0), "")
      << collation << " " << all;
}

TEST(NameOrder, follows_the_language_of_the_environment) {
  expectZebraFirst(true, "sv_SE.UTF-8", "");
  expectZebraFirst(false, "de_DE.UTF-8", "");
  expectZebraFirst(true, "de_DE.UTF-8", "sv_SE.UTF-8");
}

TEST(NameOrder, is_none_of_code_points_without_a_language) {
  for (const char* locale : {"C", "POSIX", "C.UTF-8", "qq_QQ.UTF-8@nothing"}) {
    expectZebraFirst(false, "", locale);
  }
}

}  // namespace
}  // namespace vorrin
