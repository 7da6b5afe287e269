#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/user_defaults.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using Values = std::vector<std::pair<std::string, DefaultsObject>>;

void execute(const std::filesystem::path& file, const char* sql) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database);
  sqlite3_close(database);
}

class UserDefaultsDamage : public DefaultsSandbox {
 protected:
  [[nodiscard]] std::vector<std::string> setAside(const std::string& reason) const {
    auto names = namesIn(settings);
    std::erase_if(names, [&](const std::string& name) {
      return name.find("." + reason + "-") == std::string::npos;
    });
    return names;
  }

  /// Whether a program that finds the file as it is begins anew, and says so in one line.
  void expectFreshDomain(const std::string& reason) const {
    const auto content = contentOf(standardFile());
    ChildProcess child([] {
      const auto defaults = UserDefaults::standard();
      const bool begunAnew = !defaults.object("key");
      store(defaults, "key", std::int64_t{2});
      return begunAnew && UserDefaults::standard().object("key") == DefaultsObject(std::int64_t{2});
    });
    EXPECT_TRUE(child.wait());
    const auto files = setAside(reason);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_TRUE(contentOf(settings / files.front()) == content);
    EXPECT_EQ(linesWith(child.errors(), ""), 1) << child.errors();
    EXPECT_EQ(linesWith(child.errors(), files.front()), 1) << child.errors();
  }
};

TEST_F(UserDefaultsDamage, sets_aside_a_file_that_is_no_database) {
  std::filesystem::create_directories(settings);
  fill(standardFile(), "{\"key\": 1}");
  expectFreshDomain("damaged");
}

TEST_F(UserDefaultsDamage, sets_aside_a_database_that_is_no_settings_file) {
  std::filesystem::create_directories(settings);
  execute(standardFile(), "CREATE TABLE accounts (name, password)");
  expectFreshDomain("damaged");
}

TEST_F(UserDefaultsDamage, sets_aside_a_table_of_another_form) {
  std::filesystem::create_directories(settings);
  execute(standardFile(),
          "CREATE TABLE defaults (key, value); INSERT INTO defaults VALUES ('key', 1)");
  expectFreshDomain("damaged");
}

TEST_F(UserDefaultsDamage, sets_aside_a_file_cut_short) {
  const auto defaults = UserDefaults::standard();
  store(defaults, "key", std::int64_t{1});
  store(defaults, "data", Data{std::string(50'000, 'x')});
  std::filesystem::resize_file(standardFile(), 20'000);
  expectFreshDomain("damaged");
}

TEST_F(UserDefaultsDamage, sets_aside_a_file_that_only_a_later_sqlite_may_write) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  auto content = contentOf(standardFile());
  ASSERT_GT(content.size(), 18u);
  content[18] = 3;
  fill(standardFile(), content);
  expectFreshDomain("damaged");
}

TEST_F(UserDefaultsDamage, sets_aside_a_file_with_another_value_than_was_written) {
  store(UserDefaults::standard(), "key", std::string("a value to be found again"));
  auto content = contentOf(standardFile());
  content[content.find("value to be")] = 'V';
  fill(standardFile(), content);
  expectFreshDomain("damaged");
}

TEST_F(UserDefaultsDamage, sets_aside_a_file_that_has_lost_its_seal) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  execute(standardFile(), "DROP TABLE seal");
  expectFreshDomain("damaged");
}

TEST_F(UserDefaultsDamage, takes_what_another_program_has_written) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  for (std::int64_t value = 2; value < 5; ++value) {
    execute(standardFile(), "UPDATE defaults SET value = value + 1 WHERE key = 'key'");
    const auto defaults = UserDefaults::standard();
    EXPECT_EQ(defaults.object("key"), DefaultsObject(value));
    store(defaults, "other", value);
  }
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

TEST_F(UserDefaultsDamage, uses_and_seals_a_file_of_the_first_version) {
  store(UserDefaults::standard(), "key", std::string("a value to be found again"));
  execute(standardFile(), "DROP TABLE seal; PRAGMA user_version = 1");
  const auto defaults = UserDefaults::standard();
  EXPECT_TRUE(defaults.object("key"));
  store(defaults, "other", true);
  auto content = contentOf(standardFile());
  content[content.find("value to be")] = 'V';
  fill(standardFile(), content);
  expectFreshDomain("damaged");
}

TEST_F(UserDefaultsDamage, takes_an_empty_file_for_a_new_domain) {
  std::filesystem::create_directories(settings);
  fill(standardFile(), "");
  ChildProcess child([] {
    const auto defaults = UserDefaults::standard();
    const bool empty = !defaults.object("key");
    store(defaults, "key", true);
    return empty && defaults.object("key").has_value();
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(child.errors(), "");
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

TEST_F(UserDefaultsDamage, gives_every_file_set_aside_a_name_of_its_own) {
  std::filesystem::create_directories(settings);
  constexpr std::size_t times = 4;
  ChildProcess child([&] {
    for (std::size_t i = 0; i < times; ++i) {
      fill(standardFile(), "damage " + std::to_string(i));
      store(UserDefaults::standard(), "key", true);
    }
    return true;
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(setAside("damaged").size(), times);
}

TEST_F(UserDefaultsDamage, is_mended_in_the_middle_of_use) {
  ChildProcess child([&] {
    const auto defaults = UserDefaults::standard();
    store(defaults, "key", std::int64_t{1});
    fill(standardFile(), std::string(8192, 'x'));
    store(defaults, "key", std::int64_t{2});
    return defaults.object("key") == DefaultsObject(std::int64_t{2});
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(setAside("damaged").size(), 1u);
}

TEST_F(UserDefaultsDamage, keeps_what_it_cannot_set_aside) {
  std::filesystem::create_directories(settings);
  fill(standardFile(), "no database");
  giveToOrdinaryUser();
  std::filesystem::permissions(settings, std::filesystem::perms(0500));
  ChildProcess child([] {
    becomeOrdinaryUser();
    const auto defaults = UserDefaults::standard();
    for (int i = 0; i < 3; ++i) {
      store(defaults, "key", true);
      if (defaults.object("key")) return false;
    }
    return true;
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(linesWith(child.errors(), ""), 1) << child.errors();
  EXPECT_EQ(contentOf(standardFile()), "no database");
}

TEST_F(UserDefaultsDamage, uses_a_later_form_that_has_the_table) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  execute(
      standardFile(),
      "ALTER TABLE defaults ADD COLUMN changed; CREATE TABLE more (a); PRAGMA user_version = 9");
  const auto defaults = UserDefaults::standard();
  EXPECT_EQ(defaults.object("key"), DefaultsObject(std::int64_t{1}));
  store(defaults, "key", std::int64_t{2});
  EXPECT_EQ(UserDefaults::standard().object("key"), DefaultsObject(std::int64_t{2}));
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

TEST_F(UserDefaultsDamage, sets_aside_a_later_form_that_lacks_the_table) {
  std::filesystem::create_directories(settings);
  execute(standardFile(), "CREATE TABLE settings (name, value); PRAGMA user_version = 9");
  expectFreshDomain("newer");
}

TEST_F(UserDefaultsDamage, reads_a_database_left_with_a_write_ahead_log) {
  store(UserDefaults::standard(), "key", std::int64_t{1});
  execute(standardFile(),
          "PRAGMA journal_mode = WAL; INSERT INTO defaults VALUES ('a', 'text', 'b')");
  {
    const auto defaults = UserDefaults::standard();
    EXPECT_EQ(defaults.object("key"), DefaultsObject(std::int64_t{1}));
    store(defaults, "key", std::int64_t{2});
    EXPECT_EQ(defaults.object("a"), DefaultsObject(std::string("b")));
  }
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

/// Damages `content` in one of the ways in which files are found damaged.
std::string damagedAtRandom(std::string content, std::mt19937& random) {
  const auto below = [&](std::size_t end) { return std::size_t{random()} % end; };
  switch (below(7)) {
    case 0:  // some bits
      for (std::size_t i = 0; i <= below(40); ++i) {
        auto& byte = content[below(content.size())];
        byte = static_cast<char>(byte ^ (1 << below(8)));
      }
      break;
    case 1:  // bits of the header and of the table of tables
      for (std::size_t i = 0; i <= below(6); ++i) {
        auto& byte = content[below(400)];
        byte = static_cast<char>(byte ^ (1 << below(8)));
      }
      break;
    case 2:
      content.resize(below(content.size()));
      break;
    case 3:  // a run of zeros, as of a block that never reached the disk
      for (std::size_t i = below(content.size()), end = i + below(8192);
           i < std::min(end, content.size()); ++i) {
        content[i] = '\0';
      }
      break;
    case 4:  // a run of noise
      for (std::size_t i = below(content.size()), end = i + below(3000);
           i < std::min(end, content.size()); ++i) {
        content[i] = static_cast<char>(random());
      }
      break;
    case 5: {  // two pages exchanged
      const auto pages = content.size() / 4096;
      const auto first = content.begin() + static_cast<std::ptrdiff_t>(4096 * below(pages));
      const auto second = content.begin() + static_cast<std::ptrdiff_t>(4096 * below(pages));
      if (first != second) std::swap_ranges(first, first + 4096, second);
      break;
    }
    default:
      content.append(below(10'000), static_cast<char>(random()));
      break;
  }
  return content;
}

TEST_F(UserDefaultsDamage, works_on_after_any_of_four_hundred_random_damages) {
  constexpr int damages = 400;
  Values values;
  for (int i = 0; i < 200; ++i) values.emplace_back("key" + std::to_string(i), 0.001 * i);
  values.emplace_back("data", Data{std::string(30'000, 'x')});
  UserDefaults::standard().set(values);
  const auto sound = contentOf(standardFile());
  ASSERT_GE(sound.size(), 3u * 4096);

  ChildProcess child([&] {
    std::mt19937 random(11);
    for (int i = 0; i < damages; ++i) {
      std::filesystem::remove_all(settings);
      std::filesystem::create_directories(settings);
      const auto damaged = damagedAtRandom(sound, random);
      fill(standardFile(), damaged);
      if (i % 5 == 0) fill(standardFile().string() + "-journal", damagedAtRandom(sound, random));

      const auto defaults = UserDefaults::standard();
      for (const char* key : {"key0", "key100", "key199", "data"}) {
        static_cast<void>(defaults.object(key));
      }
      store(defaults, "key100", std::int64_t{i});
      store(defaults, "data", Data{std::string(9'000, 'y')});
      const auto second = UserDefaults::standard();
      if (second.object("key100") != DefaultsObject(std::int64_t{i}) ||
          second.object("data") != DefaultsObject(Data{std::string(9'000, 'y')})) {
        std::fprintf(stderr, "damage %d lost what was written after it\n", i);
        return false;
      }
    }
    return true;
  });
  EXPECT_TRUE(child.wait()) << child.errors();
  EXPECT_GT(linesWith(child.errors(), "set aside"), damages / 4);
}

}  // namespace
}  // namespace vorrin
