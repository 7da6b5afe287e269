#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <functional>
#include <string>

#include "platform/user_defaults.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

class UserDefaultsFailure : public DefaultsSandbox {
 protected:
  void write(const std::string& content) const {
    std::filesystem::create_directories(settings);
    fill(standardFile(), content);
  }

  /// Runs `body` as a user without rights over what is not its own, and returns what it told.
  std::string toldWhile(const std::function<bool()>& body) const {
    giveToOrdinaryUser();
    ChildProcess child([&] {
      becomeOrdinaryUser();
      return body();
    });
    EXPECT_TRUE(child.wait());
    return child.errors();
  }
};

/// Whether reading and writing fail for this cause, every time.
bool failsFor(const std::string& cause) {
  for (const bool value : {true, false}) {
    const auto reading = stored("key");
    const auto writing = store("key", value);
    if (reading.value || reading.failure.value_or("").find(cause) == std::string::npos ||
        writing.value_or("").find(cause) == std::string::npos) {
      std::fprintf(stderr, "read: %s; write: %s\n", reading.failure.value_or("fine").c_str(),
                   writing.value_or("fine").c_str());
      return false;
    }
  }
  return true;
}

/// Whether the value stored is read and none can be written, for this cause.
bool isReadOnlyFor(const std::string& cause) {
  return store("key", false).value_or("").find(cause) != std::string::npos &&
         stored("key").value == DefaultsObject(true);
}

TEST_F(UserDefaultsFailure,
       reads_in_a_folder_that_cannot_be_written_says_so_once_and_writes_when_it_can) {
  ASSERT_FALSE(store("key", true));
  ::chmod(settings.c_str(), 0500);
  const auto told = toldWhile([&] {
    if (!isReadOnlyFor("Permission denied") || !isReadOnlyFor("Permission denied")) return false;
    ::chmod(settings.c_str(), 0700);
    return !store("key", 2.0) && stored("key").value == DefaultsObject(2.0);
  });
  EXPECT_EQ(linesWith(told, ""), 1) << told;
  EXPECT_EQ(linesWith(told, "vorrin: "), 1) << told;
  EXPECT_EQ(linesWith(told, standardFile()), 1) << told;
}

TEST_F(UserDefaultsFailure, fails_at_a_file_or_folder_that_cannot_be_opened) {
  for (const auto& closed : {standardFile(), settings}) {
    ASSERT_FALSE(store("key", true));
    ::chmod(closed.c_str(), 0);
    const auto told = toldWhile([] { return failsFor("Permission denied"); });
    EXPECT_EQ(linesWith(told, ""), 2) << told;
    ::chmod(closed.c_str(), 0700);
    EXPECT_EQ(stored("key").value, DefaultsObject(true));
  }
}

TEST_F(UserDefaultsFailure, fails_where_the_file_cannot_be_read_or_is_none) {
  std::filesystem::create_directories(settings);
  // A regular file whose beginning cannot be read, as on a broken disk.
  std::filesystem::create_symlink("/proc/self/mem", standardFile());
  EXPECT_TRUE(failsFor("rror"));
  std::filesystem::remove(standardFile());
  std::filesystem::create_directory(standardFile());
  EXPECT_TRUE(failsFor("not a regular file"));
  std::filesystem::remove(standardFile());
  ASSERT_EQ(::mkfifo(standardFile().c_str(), 0600), 0);
  EXPECT_TRUE(failsFor("not a regular file"));
}

TEST_F(UserDefaultsFailure, stores_nothing_where_no_folder_can_be_made) {
  for (const char* missing : {"/proc/missing/home", "/dev/null/home"}) {
    ::setenv("HOME", missing, 1);
    EXPECT_FALSE(stored("key").failure) << missing;
    EXPECT_TRUE(store("key", true)) << missing;
  }
  std::filesystem::create_directories(settings.parent_path());
  fill(settings, "a file");
  ::setenv("HOME", home.c_str(), 1);
  EXPECT_EQ(store("key", true), "Not a directory");
}

/// Makes `folder` a disk with room for so much, for this process alone.
bool mountSmallDisk(const std::filesystem::path& folder, const char* options) {
  return (::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) &&
         // A changed root directory is no mount, and those who change it see to this themselves.
         (::mount("none", "/", "", MS_REC | MS_PRIVATE, nullptr) == 0 || errno == EINVAL) &&
         ::mount("tmpfs", folder.c_str(), "tmpfs", 0, options) == 0;
}

TEST_F(UserDefaultsFailure, keeps_the_old_values_when_the_new_ones_do_not_fit_on_the_disk) {
  ASSERT_FALSE(store("key", true));
  ChildProcess child([&] {
    if (!mountSmallDisk(settings, "size=64k")) return std::fputs("no mount\n", stderr) < 0;
    const std::string full = "No space left on device";
    if (store("key", true) || store("large", Data{std::string(200'000, 'x')}) != full) return false;
    // A short file does not fit either when there is no room at all.
    std::ofstream(settings / "filler") << std::string(100'000, 'x');
    return store("key", false) == full && stored("key").value == DefaultsObject(true) &&
           !stored("large").value && namesIn(settings).size() == 2;
  });
  EXPECT_TRUE(child.wait()) << child.errors();
}

TEST_F(UserDefaultsFailure, waits_half_a_second_for_a_lock_to_write_and_none_to_read) {
  ASSERT_FALSE(store("key", true));
  using SteadyClock = std::chrono::steady_clock;
  auto lock = lockOn(settings);
  const auto begin = SteadyClock::now();
  EXPECT_EQ(stored("key").value, DefaultsObject(true));
  EXPECT_EQ(store("key", false), "another program is using the settings");
  EXPECT_GE(SteadyClock::now() - begin, std::chrono::milliseconds(500));
  EXPECT_LT(SteadyClock::now() - begin, std::chrono::seconds(10));
  lock = FileDescriptor();
  EXPECT_FALSE(store("key", false));
  EXPECT_EQ(stored("key").value, DefaultsObject(false));
}

using UserDefaultsDamage = UserDefaultsFailure;

const std::string hugeFile(9 << 20, ' ');

TEST_F(UserDefaultsDamage, sets_a_file_aside_that_cannot_be_understood_and_begins_anew) {
  const std::string deep = "{\"a\":" + std::string(2000, '[') + std::string(2000, ']') + "}";
  int count = 0;
  for (const std::string& damage :
       {std::string("no settings"), std::string("{\"key\": 1"), std::string("[1]"),
        std::string("{\"key\": tru\xFF}"), std::string("{}\0x", 4), std::string(5000, '\0'),
        std::string("{\"key\": 1e999}"), std::string(50'000, '['), deep, hugeFile}) {
    write(damage);
    ++count;
    const auto defaults = UserDefaults::standard();
    const auto reading = defaults.object("key");
    EXPECT_FALSE(reading.value || reading.failure) << count;
    const auto name =
        "org.vorrin.Vorrin.json.damaged" + (count > 1 ? "-" + std::to_string(count) : "");
    EXPECT_EQ(contentOf(settings / name), damage) << count;
    EXPECT_NE(defaults.takeNotice().value_or("").find("“" + name + "”"), std::string::npos);
    EXPECT_FALSE(defaults.takeNotice());
    EXPECT_FALSE(store("key", true));
    EXPECT_EQ(stored("key").value, DefaultsObject(true));
  }
}

TEST_F(UserDefaultsDamage, that_cannot_be_set_aside_is_kept_and_nothing_read_or_written) {
  write("no settings");
  ::chmod(settings.c_str(), 0500);
  toldWhile([] { return failsFor("cannot be understood, and not be renamed: Permission denied"); });
  EXPECT_EQ(contentOf(standardFile()), "no settings");
}

TEST_F(UserDefaultsDamage, is_set_aside_once_when_several_find_it_together) {
  write(std::string(5000, 'x'));
  std::string told;
  std::deque<ChildProcess> finders;
  for (int finder = 0; finder < 4; ++finder) {
    finders.emplace_back([finder] { return !store("key" + std::to_string(finder), true); });
  }
  for (auto& finder : finders) {
    EXPECT_TRUE(finder.wait());
    told += finder.errors();
  }
  EXPECT_EQ(linesWith(told, "vorrin: "), 1) << told;
  EXPECT_EQ(namesIn(settings).size(), 2u);
  for (int finder = 0; finder < 4; ++finder) {
    EXPECT_EQ(stored("key" + std::to_string(finder)).value, DefaultsObject(true));
  }
}

}  // namespace
}  // namespace vorrin
