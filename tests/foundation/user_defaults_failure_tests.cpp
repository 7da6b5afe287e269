#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>

#include "platform/user_defaults.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

class UserDefaultsFailure : public DefaultsSandbox {
 protected:
  /// Runs `body` as a user without rights over what is not its own, and returns what it told.
  static std::string toldWhile(const std::function<bool()>& body) {
    ChildProcess child([&] {
      becomeOrdinaryUser();
      return body();
    });
    EXPECT_TRUE(child.wait());
    return child.errors();
  }
};

/// Reads and writes as a program does that knows of no failure.
bool staysAt(const UserDefaults& defaults, const std::optional<DefaultsObject>& value) {
  for (std::int64_t i = 100; i < 105; ++i) {
    store(defaults, "key", i);
    if (defaults.object("key") != value) return false;
  }
  return UserDefaults::standard().object("key") == value;
}

TEST_F(UserDefaultsFailure, reads_a_domain_in_a_directory_that_cannot_be_written) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  giveToOrdinaryUser();
  ::chmod(settings.c_str(), 0500);
  const auto told =
      toldWhile([] { return staysAt(UserDefaults::standard(), DefaultsObject(std::int64_t{1})); });
  EXPECT_EQ(linesWith(told, ""), 1) << told;
  EXPECT_EQ(linesWith(told, "vorrin: "), 1) << told;
  EXPECT_EQ(linesWith(told, standardFile()), 1) << told;
}

TEST_F(UserDefaultsFailure, reads_a_file_that_cannot_be_written) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  giveToOrdinaryUser();
  ::chmod(standardFile().c_str(), 0400);
  const auto told =
      toldWhile([] { return staysAt(UserDefaults::standard(), DefaultsObject(std::int64_t{1})); });
  EXPECT_EQ(linesWith(told, ""), 1) << told;
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

TEST_F(UserDefaultsFailure, writes_again_when_the_file_can_be_written_again) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  giveToOrdinaryUser();
  ::chmod(standardFile().c_str(), 0400);
  toldWhile([&] {
    const auto defaults = UserDefaults::standard();
    store(defaults, "key", std::int64_t{2});
    ::chmod(standardFile().c_str(), 0600);
    store(defaults, "key", std::int64_t{3});
    return defaults.object("key") == DefaultsObject(std::int64_t{3});
  });
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

TEST_F(UserDefaultsFailure, gives_nothing_from_a_file_that_cannot_be_read) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  giveToOrdinaryUser();
  ::chmod(standardFile().c_str(), 0);
  const auto told = toldWhile([] { return staysAt(UserDefaults::standard(), std::nullopt); });
  EXPECT_EQ(linesWith(told, ""), 1) << told;
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

TEST_F(UserDefaultsFailure, keeps_nothing_on_a_disk_that_cannot_be_read_and_sets_nothing_aside) {
  std::filesystem::create_directories(settings);
  // A regular file whose beginning can be neither read nor written, as on a broken disk.
  std::filesystem::create_symlink("/proc/self/mem", standardFile());
  ChildProcess child([] { return staysAt(UserDefaults::standard(), std::nullopt); });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(linesWith(child.errors(), ""), 1) << child.errors();
  EXPECT_EQ(linesWith(child.errors(), "Input/output error"), 1) << child.errors();
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

TEST_F(UserDefaultsFailure, gives_nothing_in_a_directory_that_cannot_be_entered) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  giveToOrdinaryUser();
  ::chmod(settings.c_str(), 0);
  const auto told = toldWhile([] { return staysAt(UserDefaults::standard(), std::nullopt); });
  EXPECT_EQ(linesWith(told, ""), 1) << told;
}

TEST_F(UserDefaultsFailure, keeps_nothing_where_there_is_no_home_and_none_can_be_made) {
  for (const char* missing : {"/proc/missing/home", "/dev/null/home"}) {
    ::setenv("HOME", missing, 1);
    const auto told = toldWhile([] { return staysAt(UserDefaults::standard(), std::nullopt); });
    EXPECT_EQ(linesWith(told, ""), 1) << told;
    EXPECT_EQ(linesWith(told, missing), 1) << told;
  }
}

TEST_F(UserDefaultsFailure, tells_nothing_while_it_only_reads_what_is_not_there) {
  ::setenv("HOME", "/proc/missing/home", 1);
  EXPECT_EQ(toldWhile([] { return !UserDefaults::standard().object("key"); }), "");
}

TEST_F(UserDefaultsFailure, keeps_nothing_where_something_else_lies_in_its_place) {
  std::filesystem::create_directories(standardFile());
  giveToOrdinaryUser();
  const auto told = toldWhile([] { return staysAt(UserDefaults::standard(), std::nullopt); });
  EXPECT_EQ(linesWith(told, ""), 1) << told;
  EXPECT_TRUE(std::filesystem::is_directory(standardFile()));
}

TEST_F(UserDefaultsFailure, keeps_nothing_at_a_link_to_a_place_that_cannot_be_made) {
  std::filesystem::create_directories(settings);
  std::filesystem::create_symlink(root / "missing" / "file", standardFile());
  giveToOrdinaryUser();
  const auto told = toldWhile([] { return staysAt(UserDefaults::standard(), std::nullopt); });
  EXPECT_EQ(linesWith(told, ""), 1) << told;
}

TEST_F(UserDefaultsFailure, shows_a_path_of_two_lines_on_one) {
  ::setenv("HOME", "/proc/missing\nhome", 1);
  const auto told = toldWhile([] { return staysAt(UserDefaults::standard(), std::nullopt); });
  EXPECT_EQ(linesWith(told, ""), 1) << told;
}

TEST_F(UserDefaultsFailure, keeps_the_old_values_when_the_new_ones_do_not_fit) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  ChildProcess child([&] {
    // A file system of its own where that may be made, otherwise a limit on every file.
    const rlimit limit{.rlim_cur = 65536, .rlim_max = 65536};
    ::signal(SIGXFSZ, SIG_IGN);
    const bool mounted = ::unshare(CLONE_NEWNS) == 0 &&
                         ::mount("none", "/", "", MS_REC | MS_PRIVATE, nullptr) == 0 &&
                         ::mount("tmpfs", settings.c_str(), "tmpfs", 0, "size=64k,mode=0700") == 0;
    if (!mounted) ::setrlimit(RLIMIT_FSIZE, &limit);
    const auto defaults = UserDefaults::standard();
    store(defaults, "key", std::int64_t{2});
    for (int i = 0; i < 3; ++i) {
      store(defaults, "large", Data{std::string(200'000, 'x')});
      if (defaults.object("large")) return false;
    }
    const bool kept = defaults.object("key") == DefaultsObject(std::int64_t{2});
    store(defaults, "key", std::int64_t{3});
    return kept && UserDefaults::standard().object("key") == DefaultsObject(std::int64_t{3});
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(linesWith(child.errors(), ""), 1) << child.errors();
}

class SuiteFailure : public UserDefaultsFailure {
 protected:
  const std::filesystem::path privateDirectory =
      temporary / ("vorrin-" + std::to_string(ordinaryUser()));

  void closeHome() const {
    giveToOrdinaryUser();
    ::chmod(home.c_str(), 0500);
  }
};

TEST_F(SuiteFailure, lies_among_the_temporary_files_where_the_settings_cannot_be_written) {
  closeHome();
  const auto told = toldWhile([&] {
    const auto suite = UserDefaults::suite("suite");
    if (!suite) return false;
    store(*suite, "key", std::int64_t{1});
    const auto second = UserDefaults::suite("suite");
    return second && second->object("key") == DefaultsObject(std::int64_t{1}) &&
           permissionsOf(privateDirectory) == 0700 &&
           permissionsOf(privateDirectory / "suite.sqlite3") == 0600;
  });
  EXPECT_EQ(told, "");
}

TEST_F(SuiteFailure, leaves_nothing_among_the_temporary_files_when_it_is_removed) {
  closeHome();
  toldWhile([&] {
    const auto suite = UserDefaults::suite("suite");
    if (!suite) return false;
    store(*suite, "key", std::int64_t{1});
    UserDefaults::removePersistentDomain("suite");
    return namesIn(temporary).empty();
  });
}

TEST_F(SuiteFailure, stays_where_it_was_made) {
  closeHome();
  toldWhile([&] {
    store(suiteNamed("suite"), "key", std::int64_t{1});
    ::chmod(home.c_str(), 0700);
    return suiteNamed("suite").object("key") == DefaultsObject(std::int64_t{1});
  });
}

TEST_F(SuiteFailure, trusts_no_directory_that_another_could_have_made) {
  const auto trap = root / "trap";
  std::filesystem::create_directory(trap);
  const std::function<void()> traps[] = {
      [&] { std::filesystem::create_directory_symlink(trap, privateDirectory); },
      [&] {
        std::filesystem::create_directory(privateDirectory);
        ::chmod(privateDirectory.c_str(), 0770);
      },
      [&] { fill(privateDirectory, "a file"); },
  };
  for (const auto& set : traps) {
    ::chmod(home.c_str(), 0700);
    std::filesystem::remove_all(privateDirectory);
    set();
    closeHome();
    toldWhile([&] {
      const auto name = "vorrin-test-trap";
      const auto suite = UserDefaults::suite(name);
      if (suite) store(*suite, "key", true);
      const bool stayedOut = namesIn(trap).empty() && namesIn(privateDirectory).empty();
      UserDefaults::removePersistentDomain(name);
      return stayedOut;
    });
  }
}

TEST_F(SuiteFailure, trusts_no_temporary_directory_in_which_others_can_rename) {
  closeHome();
  ::chmod(temporary.c_str(), 0777);
  toldWhile([&] {
    const auto suite = UserDefaults::suite("vorrin-test-open");
    const bool stayedOut = namesIn(temporary).empty();
    UserDefaults::removePersistentDomain("vorrin-test-open");
    return stayedOut;
  });
}

}  // namespace
}  // namespace vorrin
