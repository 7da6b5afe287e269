#include "platform/text_file.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"
#include "tests/foundation/killed_at_instant.h"

namespace vorrin {
namespace {

using namespace std::string_literals;

class TextFile : public DefaultsSandbox {
 protected:
  const std::filesystem::path directory = root / "directory";
  const std::filesystem::path file = directory / "text";

  TextFile() { std::filesystem::create_directory(directory); }
};

TEST_F(TextFile, is_read_as_it_was_written) {
  for (const std::string& text :
       {""s, "one line\n"s, "naïve \0 ☕\r\n"s, std::string(100'000, 'x')}) {
    ASSERT_TRUE(writeTextFileAtomically(file, text));
    EXPECT_EQ(readTextFile(file), text);
    EXPECT_EQ(contentOf(file), text);
  }
}

TEST_F(TextFile, leaves_no_other_file_behind) {
  ASSERT_TRUE(writeTextFileAtomically(file, "old"));
  ASSERT_TRUE(writeTextFileAtomically(file, "new"));
  EXPECT_EQ(namesIn(directory), std::vector<std::string>{"text"});
}

TEST_F(TextFile, keeps_the_permissions_of_the_file_it_replaces) {
  fill(file, "old");
  ::chmod(file.c_str(), 0604);
  ASSERT_TRUE(writeTextFileAtomically(file, "new"));
  EXPECT_EQ(permissionsOf(file), 0604u);
}

TEST_F(TextFile, gets_the_permissions_of_every_new_file) {
  const mode_t before = ::umask(027);
  ASSERT_TRUE(writeTextFileAtomically(file, "new"));
  ::umask(before);
  EXPECT_EQ(permissionsOf(file), 0640u);
}

TEST_F(TextFile, is_written_where_a_link_leads) {
  fill(root / "elsewhere", "old");
  std::filesystem::create_symlink("../elsewhere", directory / "link");
  std::filesystem::create_symlink("link", file);
  ASSERT_TRUE(writeTextFileAtomically(file, "new"));
  EXPECT_TRUE(std::filesystem::is_symlink(file));
  EXPECT_EQ(contentOf(root / "elsewhere"), "new");
}

TEST_F(TextFile, is_made_where_a_link_to_nothing_leads) {
  std::filesystem::create_symlink(root / "elsewhere", file);
  ASSERT_TRUE(writeTextFileAtomically(file, "new"));
  EXPECT_EQ(contentOf(root / "elsewhere"), "new");
}

TEST_F(TextFile, is_not_written_where_links_lead_in_a_circle) {
  std::filesystem::create_symlink("text", directory / "link");
  std::filesystem::create_symlink("link", file);
  EXPECT_FALSE(writeTextFileAtomically(file, "new"));
  EXPECT_FALSE(readTextFile(file));
}

TEST_F(TextFile, is_not_written_in_a_missing_directory_and_does_not_make_it) {
  EXPECT_FALSE(writeTextFileAtomically(directory / "missing" / "text", "new"));
  EXPECT_FALSE(std::filesystem::exists(directory / "missing"));
  EXPECT_FALSE(writeTextFileAtomically("", "new"));
}

TEST_F(TextFile, does_not_replace_a_directory_or_a_pipe) {
  std::filesystem::create_directory(file);
  ASSERT_EQ(::mkfifo((directory / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(writeTextFileAtomically(file, "new"));
  EXPECT_FALSE(writeTextFileAtomically(directory / "pipe", "new"));
  EXPECT_EQ(namesIn(directory), (std::vector<std::string>{"pipe", "text"}));
}

TEST_F(TextFile, cannot_be_read_from_a_directory_a_pipe_or_nothing) {
  ASSERT_EQ(::mkfifo((directory / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(readTextFile(directory));
  EXPECT_FALSE(readTextFile(directory / "pipe"));
  EXPECT_FALSE(readTextFile(file));
}

TEST_F(TextFile, gives_nothing_when_reading_fails) {
  // A regular file whose beginning cannot be read, as on a broken disk.
  std::filesystem::create_symlink("/proc/self/mem", file);
  EXPECT_FALSE(readTextFile(file));
}

TEST_F(TextFile, gives_nothing_when_it_is_not_utf8) {
  for (const char* content : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xC0\x80", "\xF5\x80\x80\x80"}) {
    fill(file, content);
    EXPECT_FALSE(readTextFile(file));
  }
}

TEST_F(TextFile, keeps_the_old_text_and_leaves_nothing_behind_when_the_new_one_does_not_fit) {
  fill(file, "old");
  ChildProcess child([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{.rlim_cur = 10'000, .rlim_max = 10'000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return !writeTextFileAtomically(file, std::string(20'000, 'x'));
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(contentOf(file), "old");
  EXPECT_EQ(namesIn(directory), std::vector<std::string>{"text"});
}

TEST_F(TextFile, keeps_the_old_text_when_the_directory_cannot_be_written) {
  fill(file, "old");
  giveToOrdinaryUser();
  ::chmod(directory.c_str(), 0500);
  ChildProcess child([&] {
    becomeOrdinaryUser();
    return !writeTextFileAtomically(file, "new") && readTextFile(file) == "old";
  });
  EXPECT_TRUE(child.wait());
}

TEST_F(TextFile, is_seen_whole_by_a_reader_at_every_moment) {
  const std::string first(50'000, 'a');
  const std::string second(70'000, 'b');
  ASSERT_TRUE(writeTextFileAtomically(file, first));
  ChildProcess writer([&] {
    for (;;) {
      if (!writeTextFileAtomically(file, second) || !writeTextFileAtomically(file, first)) {
        return false;
      }
    }
  });
  for (int i = 0; i < 300; ++i) {
    const auto text = readTextFile(file);
    ASSERT_TRUE(text == first || text == second);
  }
}

TEST_F(TextFile, is_whole_and_soon_alone_when_its_writer_is_killed_at_any_instant) {
  fill(file, "old");
  for (int instant = 0;; ++instant) {
    const bool killed =
        killedAtInstant(instant, [&] { static_cast<void>(writeTextFileAtomically(file, "new")); });
    const auto text = readTextFile(file);
    ASSERT_TRUE(text == "old" || text == "new") << "at instant " << instant;
    ASSERT_LE(namesIn(directory).size(), 2u) << "at instant " << instant;
    ASSERT_TRUE(writeTextFileAtomically(file, "old")) << "after instant " << instant;
    ASSERT_EQ(namesIn(directory), std::vector<std::string>{"text"}) << "after instant " << instant;
    if (!killed) break;
  }
}

TEST_F(TextFile, is_not_written_by_two_at_once) {
  constexpr int writers = 3;
  std::vector<std::unique_ptr<ChildProcess>> children;
  for (int writer = 0; writer < writers; ++writer) {
    children.push_back(std::make_unique<ChildProcess>([&, writer] {
      for (int i = 0; i < 200; ++i) {
        const std::string text(20'000, static_cast<char>('a' + writer));
        static_cast<void>(writeTextFileAtomically(file, text));
        const auto found = readTextFile(file);
        if (!found || *found != std::string(20'000, found->front())) return false;
      }
      return true;
    }));
  }
  for (const auto& child : children) EXPECT_TRUE(child->wait());
  ASSERT_TRUE(writeTextFileAtomically(file, "last"));
  EXPECT_EQ(namesIn(directory), std::vector<std::string>{"text"});
}

TEST_F(TextFile, is_not_written_through_what_somebody_laid_in_wait) {
  fill(root / "other", "of somebody else");
  const auto trap = directory / ".text.vorrin-new";
  std::filesystem::create_symlink(root / "other", trap);
  EXPECT_FALSE(writeTextFileAtomically(file, "new"));
  std::filesystem::remove(trap);
  std::filesystem::create_hard_link(root / "other", trap);
  EXPECT_FALSE(writeTextFileAtomically(file, "new"));
  EXPECT_EQ(contentOf(root / "other"), "of somebody else");
}

TEST_F(TextFile, opens_no_descriptor_for_good) {
  const auto before = openDescriptors();
  ASSERT_TRUE(writeTextFileAtomically(file, "new"));
  ASSERT_TRUE(readTextFile(file));
  EXPECT_FALSE(writeTextFileAtomically(directory, "new"));
  EXPECT_EQ(openDescriptors(), before);
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
  ::setenv("HOME", "", 1);
  EXPECT_EQ(homeDirectory(), account);
  ::setenv("HOME", "not/absolute", 1);
  EXPECT_EQ(homeDirectory(), account);
}

}  // namespace
}  // namespace vorrin
