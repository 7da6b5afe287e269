#include "platform/linux/foundation/domain_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

class DomainFiles : public DefaultsSandbox {
 protected:
  DomainFiles() { patience.beginOperation(); }

  const std::filesystem::path file = settings / "domain.sqlite3";
  LockPatience patience{file};
};

TEST_F(DomainFiles, makes_the_directories_above_the_file) {
  EXPECT_TRUE(makeDomainFile(file, patience).isDone());
  EXPECT_EQ(namesIn(settings), std::vector<std::string>{"domain.sqlite3"});
}

TEST_F(DomainFiles, leaves_a_file_that_is_there_as_it_is) {
  std::filesystem::create_directories(settings);
  fill(file, "content");
  EXPECT_TRUE(makeDomainFile(file, patience).isDone());
  EXPECT_EQ(contentOf(file), "content");
}

TEST_F(DomainFiles, sets_the_journal_aside_with_the_file) {
  std::filesystem::create_directories(settings);
  fill(file, "database");
  fill(file.string() + "-journal", "journal");
  const auto notReplaced = [] { return false; };
  std::filesystem::path name;
  ASSERT_TRUE(setDomainFileAside(file, "damaged", notReplaced, patience, name).isDone());
  EXPECT_EQ(contentOf(name), "database");
  EXPECT_EQ(contentOf(name.string() + "-journal"), "journal");
  EXPECT_EQ(namesIn(settings).size(), 2u);
}

TEST_F(DomainFiles, leaves_the_file_with_its_journal_when_that_cannot_be_set_aside) {
  std::filesystem::create_directories(settings);
  fill(file, "database");
  fill(file.string() + "-journal", "journal");
  giveToOrdinaryUser();
  ::chmod(settings.c_str(), 0500);
  ChildProcess child([&] {
    becomeOrdinaryUser();
    std::filesystem::path name;
    const auto result = setDomainFileAside(
        file, "damaged", [] { return false; }, patience, name);
    return result.status == StorageStatus::unavailable && name.empty();
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(namesIn(settings),
            (std::vector<std::string>{"domain.sqlite3", "domain.sqlite3-journal"}));
}

TEST_F(DomainFiles, sets_nothing_aside_that_was_replaced_meanwhile) {
  std::filesystem::create_directories(settings);
  fill(file, "new");
  const auto replaced = [] { return true; };
  std::filesystem::path name;
  EXPECT_TRUE(setDomainFileAside(file, "damaged", replaced, patience, name).isDone());
  EXPECT_EQ(name, std::filesystem::path());
  EXPECT_EQ(contentOf(file), "new");
}

TEST_F(DomainFiles, does_not_wait_for_ever_for_the_lock_on_the_directory) {
  std::filesystem::create_directories(settings);
  const FileDescriptor directory(::open(settings.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(::flock(directory.get(), LOCK_EX), 0);
  EXPECT_EQ(makeDomainFile(file, patience).status, StorageStatus::busy);
}

}  // namespace
}  // namespace vorrin
