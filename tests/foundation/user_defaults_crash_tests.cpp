#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/user_defaults.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"
#include "tests/foundation/killed_at_instant.h"

namespace vorrin {
namespace {

using Values = std::vector<std::pair<std::string, DefaultsObject>>;

/// Three values that belong together.
Values generation(std::int64_t number) {
  const auto size = static_cast<std::size_t>(number * 7919 % 20'000);
  return {{"first", number},
          {"data", Data{std::string(size, static_cast<char>('a' + number % 26))}},
          {"last", number}};
}

/// The generation of which all values are stored; -1 when there are none, -2 when they are mixed.
std::int64_t storedGeneration() {
  const auto defaults = UserDefaults::standard();
  const auto first = defaults.object("first");
  if (!first) return defaults.object("data") || defaults.object("last") ? -2 : -1;
  const auto number = std::get<std::int64_t>(*first);
  for (const auto& [key, value] : generation(number)) {
    if (defaults.object(key) != value) return -2;
  }
  return number;
}

class UserDefaultsCrash : public DefaultsSandbox {};

TEST_F(UserDefaultsCrash, loses_no_committed_value_when_a_writer_is_killed) {
  constexpr int kills = 80;
  std::mt19937 random(7);
  std::int64_t stored = -1;
  for (int kill = 0; kill < kills; ++kill) {
    if (kill % 8 == 0) {  // once in a while the first value of all
      std::filesystem::remove_all(home / ".config");
      stored = -1;
    }
    std::array<int, 2> commits{};
    ASSERT_EQ(::pipe(commits.data()), 0);
    ChildProcess writer([&] {
      const auto defaults = UserDefaults::standard();
      for (std::int64_t number = stored + 1;; ++number) {
        defaults.set(generation(number));
        if (::write(commits[1], &number, sizeof number) != sizeof number) return false;
      }
    });
    ::close(commits[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 30'000));
    writer.kill();
    for (std::int64_t number = 0; ::read(commits[0], &number, sizeof number) == sizeof number;) {
      stored = number;
    }
    ::close(commits[0]);
    const auto found = storedGeneration();
    ASSERT_TRUE(found == stored || found == stored + 1) << found << " instead of " << stored;
    stored = found;
    ASSERT_EQ(writer.errors(), "");
  }
}

TEST_F(UserDefaultsCrash, stores_all_values_or_none_when_killed_at_any_instant) {
  const auto write = [] { UserDefaults::standard().set(generation(2)); };
  int instants = 0;
  for (;; ++instants) {
    UserDefaults::standard().set(generation(1));
    if (!killedAtInstant(instants, write)) break;
    const auto found = storedGeneration();
    ASSERT_TRUE(found == 1 || found == 2) << found << " at instant " << instants;
  }
  EXPECT_EQ(storedGeneration(), 2);
  EXPECT_GE(instants, 20);
  EXPECT_EQ(namesIn(settings).size(), 1u);
}

TEST_F(UserDefaultsCrash, begins_a_domain_wholly_or_not_at_all_when_killed_at_any_instant) {
  const auto write = [] { UserDefaults::standard().set(generation(1)); };
  int instants = 0;
  for (;; ++instants) {
    std::filesystem::remove_all(home / ".config");
    if (!killedAtInstant(instants, write)) break;
    const auto found = storedGeneration();
    ASSERT_TRUE(found == -1 || found == 1) << found << " at instant " << instants;
    UserDefaults::standard().set(generation(2));
    ASSERT_EQ(storedGeneration(), 2) << "at instant " << instants;
    ASSERT_EQ(namesIn(settings).size(), 1u) << "at instant " << instants;
  }
  EXPECT_EQ(storedGeneration(), 1);
  EXPECT_GE(instants, 20);
}

TEST_F(UserDefaultsCrash, keeps_a_damaged_file_when_killed_at_any_instant_of_setting_it_aside) {
  const std::string damaged(5000, 'x');
  const auto write = [] {
    ::close(STDERR_FILENO);
    UserDefaults::standard().set(generation(1));
  };
  for (int instant = 0;; ++instant) {
    std::filesystem::remove_all(home / ".config");
    std::filesystem::create_directories(settings);
    fill(standardFile(), damaged);
    fill(standardFile().string() + "-journal", damaged);
    const bool killed = killedAtInstant(instant, write);
    ChildProcess child([] {
      UserDefaults::standard().set(generation(2));
      return storedGeneration() == 2;
    });
    ASSERT_TRUE(child.wait()) << "at instant " << instant << ": " << child.errors();
    int kept = 0;
    for (const auto& name : namesIn(settings)) {
      if (name.find(".damaged-") != std::string::npos && !name.ends_with("-journal")) {
        ++kept;
        ASSERT_EQ(contentOf(settings / name), damaged) << "at instant " << instant;
      }
    }
    ASSERT_EQ(kept, 1) << "at instant " << instant;
    if (!killed) break;
  }
}

TEST_F(UserDefaultsCrash, can_remove_a_suite_whose_removal_was_killed_at_any_instant) {
  for (int instant = 0;; ++instant) {
    store(suiteNamed("suite"), "key", std::int64_t{instant});
    const bool killed =
        killedAtInstant(instant, [] { UserDefaults::removePersistentDomain("suite"); });
    const auto value = suiteNamed("suite").object("key");
    ASSERT_TRUE(!value || value == DefaultsObject(std::int64_t{instant})) << instant;
    UserDefaults::removePersistentDomain("suite");
    ASSERT_EQ(namesIn(settings), std::vector<std::string>{});
    if (!killed) break;
  }
}

}  // namespace
}  // namespace vorrin
