#include "platform/user_defaults.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using namespace std::string_literals;

using Values = std::vector<std::pair<std::string, DefaultsObject>>;

class UserDefaultsTest : public DefaultsSandbox {};

const Values valuesOfEveryType = {
    {"yes", true},
    {"no", false},
    {"integer", std::int64_t{42}},
    {"smallest", std::numeric_limits<std::int64_t>::min()},
    {"largest", std::numeric_limits<std::int64_t>::max()},
    {"real", 0.2},
    {"wholeReal", 5.0},
    {"tiniest", std::numeric_limits<double>::denorm_min()},
    {"infinite", std::numeric_limits<double>::infinity()},
    {"text", "naïve ☕"s},
    {"emptyText", ""s},
    {"zeroes", "a\0b\0"s},
    {"data", Data{"\xFF\0{}"s}},
    {"emptyData", Data{}},
    {"", "value of the empty key"s},
    {"key with \0 and ☕"s, std::int64_t{-1}},
};

TEST_F(UserDefaultsTest, keeps_values_of_every_type) {
  const auto defaults = UserDefaults::standard();
  defaults.set(valuesOfEveryType);
  for (const auto& [key, value] : valuesOfEveryType) EXPECT_EQ(defaults.object(key), value) << key;
}

TEST_F(UserDefaultsTest, gives_them_to_another_object_at_once) {
  const auto reader = UserDefaults::standard();
  EXPECT_FALSE(reader.object("real"));
  UserDefaults::standard().set(valuesOfEveryType);
  for (const auto& [key, value] : valuesOfEveryType) EXPECT_EQ(reader.object(key), value) << key;
}

TEST_F(UserDefaultsTest, keeps_the_sign_of_zero_and_what_is_not_a_number) {
  const auto defaults = UserDefaults::standard();
  store(defaults, "zero", -0.0);
  store(defaults, "nan", std::nan(""));
  EXPECT_TRUE(std::signbit(std::get<double>(valueUnder(defaults, "zero"))));
  EXPECT_TRUE(std::isnan(std::get<double>(valueUnder(defaults, "nan"))));
}

TEST_F(UserDefaultsTest, never_takes_a_value_for_one_of_another_type) {
  const auto defaults = UserDefaults::standard();
  for (const DefaultsObject& value :
       {DefaultsObject("0.2"s), DefaultsObject(Data{"0.2"}), DefaultsObject(std::int64_t{1}),
        DefaultsObject(true), DefaultsObject(1.0)}) {
    store(defaults, "key", value);
    EXPECT_EQ(defaults.object("key"), value);
    EXPECT_EQ(valueUnder(defaults, "key").index(), value.index());
  }
}

TEST_F(UserDefaultsTest, has_nothing_under_an_unknown_key) {
  const auto defaults = UserDefaults::standard();
  EXPECT_FALSE(defaults.object("key"));
  store(defaults, "key", true);
  EXPECT_FALSE(defaults.object("Key"));
  EXPECT_FALSE(defaults.object("key "));
}

TEST_F(UserDefaultsTest, replaces_a_value) {
  const auto defaults = UserDefaults::standard();
  store(defaults, "key", 0.5);
  store(defaults, "key", Data{"{}"});
  EXPECT_EQ(defaults.object("key"), DefaultsObject(Data{"{}"}));
}

TEST_F(UserDefaultsTest, takes_the_last_of_two_values_for_one_key) {
  const auto defaults = UserDefaults::standard();
  defaults.set(Values{{"key", std::int64_t{1}}, {"key", std::int64_t{2}}});
  EXPECT_EQ(defaults.object("key"), DefaultsObject(std::int64_t{2}));
  defaults.set(Values{{"key", std::int64_t{2}}, {"key", std::int64_t{1}}});
  EXPECT_EQ(defaults.object("key"), DefaultsObject(std::int64_t{1}));
}

TEST_F(UserDefaultsTest, keeps_a_large_value) {
  const auto defaults = UserDefaults::standard();
  const DefaultsObject value = Data{std::string(3'000'000, '\x7F')};
  store(defaults, "key", value);
  EXPECT_TRUE(UserDefaults::standard().object("key") == value);
}

TEST_F(UserDefaultsTest, makes_no_file_by_reading) {
  EXPECT_FALSE(UserDefaults::standard().object("key"));
  UserDefaults::standard().set({});
  EXPECT_EQ(namesIn(home), std::vector<std::string>{});
}

TEST_F(UserDefaultsTest, lies_in_the_settings_directory_with_nothing_beside_it) {
  store(UserDefaults::standard(), "key", true);
  EXPECT_EQ(namesIn(home), std::vector<std::string>{".config"});
  EXPECT_EQ(namesIn(settings), std::vector<std::string>{"org.vorrin.Vorrin.sqlite3"});
}

TEST_F(UserDefaultsTest, lies_where_the_environment_says) {
  ::setenv("XDG_CONFIG_HOME", (root / "a" / "b").c_str(), 1);
  store(UserDefaults::standard(), "key", true);
  EXPECT_TRUE(std::filesystem::exists(root / "a" / "b" / "vorrin" / "org.vorrin.Vorrin.sqlite3"));
  EXPECT_EQ(namesIn(home), std::vector<std::string>{});
}

TEST_F(UserDefaultsTest, takes_an_empty_or_relative_directory_for_none) {
  for (const char* directory : {"", "relative/path", "."}) {
    ::setenv("XDG_CONFIG_HOME", directory, 1);
    store(UserDefaults::standard(), directory, true);
  }
  ::unsetenv("XDG_CONFIG_HOME");
  for (const char* directory : {"", "relative/path", "."}) {
    EXPECT_TRUE(UserDefaults::standard().object(directory)) << directory;
  }
}

TEST_F(UserDefaultsTest, is_closed_to_other_users_whatever_the_mask) {
  const mode_t before = ::umask(0);
  store(UserDefaults::standard(), "key", true);
  ::umask(before);
  EXPECT_EQ(permissionsOf(home / ".config"), 0700u);
  EXPECT_EQ(permissionsOf(settings), 0700u);
  EXPECT_EQ(permissionsOf(standardFile()), 0600u);
}

TEST_F(UserDefaultsTest, leaves_the_permissions_of_what_exists_alone) {
  std::filesystem::create_directories(settings);
  ::chmod(settings.c_str(), 0755);
  store(UserDefaults::standard(), "key", std::int64_t{1});
  ::chmod(standardFile().c_str(), 0640);
  store(UserDefaults::standard(), "key", std::int64_t{2});
  EXPECT_EQ(permissionsOf(settings), 0755u);
  EXPECT_EQ(permissionsOf(standardFile()), 0640u);
}

TEST_F(UserDefaultsTest, does_not_write_what_is_stored_already) {
  const auto defaults = UserDefaults::standard();
  defaults.set(valuesOfEveryType);
  const auto content = contentOf(standardFile());
  const auto time = std::filesystem::last_write_time(standardFile());
  defaults.set(valuesOfEveryType);
  UserDefaults::standard().set(valuesOfEveryType);
  EXPECT_TRUE(contentOf(standardFile()) == content);
  EXPECT_EQ(std::filesystem::last_write_time(standardFile()), time);
}

TEST_F(UserDefaultsTest, is_kept_where_a_link_leads) {
  std::filesystem::create_directories(settings);
  const auto elsewhere = root / "elsewhere.sqlite3";
  fill(elsewhere, "");
  std::filesystem::create_symlink(elsewhere, standardFile());
  store(UserDefaults::standard(), "key", true);
  EXPECT_TRUE(std::filesystem::is_symlink(standardFile()));
  EXPECT_GT(std::filesystem::file_size(elsewhere), 0u);
  EXPECT_TRUE(UserDefaults::standard().object("key"));
}

TEST_F(UserDefaultsTest, follows_the_file_when_it_is_replaced_or_removed) {
  const auto defaults = UserDefaults::standard();
  store(defaults, "key", std::int64_t{1});
  std::filesystem::copy_file(standardFile(), root / "copy");
  store(defaults, "key", std::int64_t{2});
  std::filesystem::rename(root / "copy", standardFile());
  EXPECT_EQ(defaults.object("key"), DefaultsObject(std::int64_t{1}));
  std::filesystem::remove(standardFile());
  EXPECT_FALSE(defaults.object("key"));
  store(defaults, "key", std::int64_t{3});
  EXPECT_EQ(UserDefaults::standard().object("key"), DefaultsObject(std::int64_t{3}));
}

TEST_F(UserDefaultsTest, hands_no_descriptor_to_started_programs_and_gives_all_back) {
  store(UserDefaults::standard(), "key", true);
  const auto inheritable = inheritableDescriptors();
  const auto open = openDescriptors();
  {
    const auto defaults = UserDefaults::standard();
    store(defaults, "key", 1.0);
    EXPECT_GT(openDescriptors(), open);
    EXPECT_EQ(inheritableDescriptors(), inheritable);
  }
  EXPECT_EQ(openDescriptors(), open);
}

TEST_F(UserDefaultsTest, ignores_a_row_whose_type_and_value_do_not_agree) {
  const auto defaults = UserDefaults::standard();
  store(defaults, "good", true);
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(standardFile().c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database,
                         "INSERT INTO defaults VALUES ('a', 'real', 'text'), ('b', 'text', 1), "
                         "('c', 'data', 'text'), ('d', 'unknown', 1), ('e', 'integer', 1.5), "
                         "('f', 'text', NULL), ('g', x'FF', x'FF')",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(database);
  for (const char* key : {"a", "b", "c", "d", "e", "f", "g"}) EXPECT_FALSE(defaults.object(key));
  EXPECT_EQ(defaults.object("good"), DefaultsObject(true));
}

using Suite = UserDefaultsTest;

TEST_F(Suite, keeps_values_apart_from_every_other_domain) {
  const auto first = suiteNamed("first");
  const auto second = suiteNamed("second");
  store(first, "key", std::int64_t{1});
  EXPECT_FALSE(second.object("key"));
  EXPECT_FALSE(UserDefaults::standard().object("key"));
  EXPECT_EQ(suiteNamed("first").object("key"), DefaultsObject(std::int64_t{1}));
}

TEST_F(Suite, is_refused_a_name_that_is_none) {
  for (const std::string& name : {""s, "."s, ".."s, ".hidden"s, "a/b"s, "../a"s, "a b"s, "ä"s,
                                  "a\0"s, std::string(300, 'a'), "org.vorrin.Vorrin"s}) {
    EXPECT_FALSE(UserDefaults::suite(name)) << name;
  }
  EXPECT_EQ(namesIn(home), std::vector<std::string>{});
}

TEST_F(Suite, leaves_nothing_behind_when_it_is_removed) {
  {
    const auto suite = suiteNamed("vorrin-test-1");
    store(suite, "key", true);
    UserDefaults::removePersistentDomain("vorrin-test-1");
    EXPECT_FALSE(suite.object("key"));
  }
  EXPECT_EQ(namesIn(home), std::vector<std::string>{});
  EXPECT_EQ(namesIn(temporary), std::vector<std::string>{});
}

TEST_F(Suite, takes_every_file_made_from_it_along_when_it_is_removed) {
  std::filesystem::create_directories(settings);
  const std::string file = "suite.sqlite3";
  for (const char* suffix : {"", "-journal", "-wal", "-shm", ".damaged-20240101-000000",
                             ".damaged-20240101-000000-journal", ".newer-20240101-000000-2"}) {
    fill(settings / (file + suffix), "x");
  }
  UserDefaults::removePersistentDomain("suite");
  EXPECT_EQ(namesIn(settings), std::vector<std::string>{});
}

TEST_F(Suite, leaves_other_domains_and_their_directory_when_it_is_removed) {
  store(UserDefaults::standard(), "key", true);
  for (const char* name : {"suite.sqlite3.damaged-1", "suite2", "suite.sqlite3"}) {
    store(suiteNamed(name), "key", true);
  }
  store(suiteNamed("suite"), "key", true);
  UserDefaults::removePersistentDomain("suite");
  EXPECT_EQ(namesIn(settings), (std::vector<std::string>{
                                   "org.vorrin.Vorrin.sqlite3", "suite.sqlite3.damaged-1.sqlite3",
                                   "suite.sqlite3.sqlite3", "suite2.sqlite3"}));
}

TEST_F(Suite, leaves_a_directory_that_was_there_before_when_it_is_removed) {
  std::filesystem::create_directories(home / ".config");
  ASSERT_TRUE(UserDefaults::suite("suite"));
  UserDefaults::removePersistentDomain("suite");
  EXPECT_EQ(namesIn(home), std::vector<std::string>{".config"});
  EXPECT_EQ(namesIn(home / ".config"), std::vector<std::string>{});
}

TEST_F(Suite, removal_never_touches_the_users_own_domain) {
  store(UserDefaults::standard(), "key", true);
  UserDefaults::removePersistentDomain("org.vorrin.Vorrin");
  UserDefaults::removePersistentDomain("../vorrin/org.vorrin.Vorrin");
  EXPECT_TRUE(UserDefaults::standard().object("key"));
}

TEST_F(Suite, that_does_not_exist_can_be_removed) {
  UserDefaults::removePersistentDomain("suite");
  EXPECT_EQ(namesIn(home), std::vector<std::string>{});
}

}  // namespace
}  // namespace vorrin
