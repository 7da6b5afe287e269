#include <gtest/gtest.h>
#include <pwd.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/text_file.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

class LinuxTextFile : public DefaultsSandbox {
 protected:
  LinuxTextFile() { std::filesystem::create_directory(directory); }

  const std::filesystem::path directory = root / "directory";
  const std::filesystem::path file = directory / "text";
};

TEST_F(LinuxTextFile, keeps_the_permissions_of_the_file_it_replaces) {
  fill(file, "old");
  ::chmod(file.c_str(), 0604);
  ASSERT_TRUE(writeTextFileAtomically(file, "new"));
  EXPECT_EQ(permissionsOf(file), 0604u);
}

TEST_F(LinuxTextFile, is_written_where_a_link_leads) {
  fill(root / "elsewhere", "old");
  std::filesystem::create_symlink("../elsewhere", directory / "link");
  std::filesystem::create_symlink("link", file);
  ASSERT_TRUE(writeTextFileAtomically(file, "new"));
  EXPECT_TRUE(std::filesystem::is_symlink(file));
  EXPECT_EQ(contentOf(root / "elsewhere"), "new");
}

TEST_F(LinuxTextFile, waits_for_no_pipe) {
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  EXPECT_FALSE(writeTextFileAtomically(file, "new"));
  EXPECT_FALSE(readTextFile(file));
}

TEST_F(LinuxTextFile, keeps_the_old_text_and_leaves_nothing_behind_when_the_new_one_does_not_fit) {
  fill(file, "old");
  ChildProcess child([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{.rlim_cur = 100, .rlim_max = 100};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return !writeTextFileAtomically(file, std::string(200, 'x')) &&
           !writeTextFileAtomically(file, std::string(20'000, 'x'));
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(contentOf(file), "old");
  EXPECT_EQ(namesIn(directory), std::vector<std::string>{"text"});
}

using HomeDirectory = DefaultsSandbox;

TEST_F(HomeDirectory, is_what_the_environment_says) {
  EXPECT_EQ(homeDirectory(), home);
  ::setenv("HOME", "/does/not/exist", 1);
  EXPECT_EQ(homeDirectory(), "/does/not/exist");
}

TEST_F(HomeDirectory, is_that_of_the_account_when_the_environment_names_none) {
  const std::string account = ::getpwuid(::getuid())->pw_dir;
  ::unsetenv("HOME");
  EXPECT_EQ(homeDirectory(), account);
  for (const char* none : {"", "not/absolute"}) {
    ::setenv("HOME", none, 1);
    EXPECT_EQ(homeDirectory(), account);
  }
}

}  // namespace
}  // namespace vorrin
