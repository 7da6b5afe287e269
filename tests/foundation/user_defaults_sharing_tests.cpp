#include <gtest/gtest.h>
#include <poll.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <string>

#include "platform/user_defaults.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

class UserDefaultsSharing : public DefaultsSandbox {};

/// Holds processes back until one opens it.
class Gate {
 public:
  Gate() {
    if (::pipe(ends_.data()) != 0) std::abort();
  }
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  ~Gate() {
    ::close(ends_[0]);
    ::close(ends_[1]);
  }

  /// Returns when the gate is open. It stays open for all.
  void waitFor() const {
    pollfd end{.fd = ends_[0], .events = POLLIN, .revents = 0};
    ::poll(&end, 1, -1);
  }

  void open() const {
    const char byte = 0;
    if (::write(ends_[1], &byte, 1) != 1) std::abort();
  }

 private:
  std::array<int, 2> ends_{};
};

/// Another process that holds a lock on the whole of a database until it is told to let go.
class Locker {
 public:
  explicit Locker(const std::filesystem::path& file) : child_([&] { return hold(file); }) {
    taken_.waitFor();
  }

  void release() {
    mayRelease_.open();
    EXPECT_TRUE(child_.wait());
  }

  /// Lets go after a while, without waiting for it.
  void releaseSoon() { mayRelease_.open(); }

 private:
  bool hold(const std::filesystem::path& file) {
    sqlite3* database = nullptr;
    sqlite3_open(file.c_str(), &database);
    if (sqlite3_exec(database, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) != SQLITE_OK) {
      return false;
    }
    taken_.open();
    mayRelease_.waitFor();
    ::usleep(100'000);
    return sqlite3_close(database) == SQLITE_OK;
  }

  Gate taken_;
  Gate mayRelease_;
  ChildProcess child_;
};

TEST_F(UserDefaultsSharing, shows_another_process_what_was_written_at_once) {
  const auto defaults = UserDefaults::standard();
  for (std::int64_t i = 0; i < 5; ++i) {
    store(defaults, "key", i);
    ChildProcess child([&] {
      const bool seen = UserDefaults::standard().object("key") == DefaultsObject(i);
      store(UserDefaults::standard(), "answer", i);
      return seen;
    });
    EXPECT_TRUE(child.wait());
    EXPECT_EQ(defaults.object("answer"), DefaultsObject(i));
  }
}

TEST_F(UserDefaultsSharing, loses_no_value_of_processes_that_write_different_keys) {
  constexpr int writers = 4;
  constexpr std::int64_t writes = 25;
  const Gate gate;
  std::deque<ChildProcess> children;
  for (int writer = 0; writer < writers; ++writer) {
    children.emplace_back([&, writer] {
      gate.waitFor();
      const auto defaults = UserDefaults::standard();
      for (std::int64_t i = 1; i <= writes; ++i) {
        store(defaults, "key" + std::to_string(writer), i);
        if (defaults.object("key" + std::to_string(writer)) != DefaultsObject(i)) return false;
      }
      return true;
    });
  }
  gate.open();
  for (auto& child : children) EXPECT_TRUE(child.wait()) << child.errors();
  for (int writer = 0; writer < writers; ++writer) {
    EXPECT_EQ(UserDefaults::standard().object("key" + std::to_string(writer)),
              DefaultsObject(writes));
  }
  EXPECT_EQ(namesIn(settings), std::vector<std::string>{"org.vorrin.Vorrin.sqlite3"});
}

TEST_F(UserDefaultsSharing, loses_nothing_when_several_find_the_same_damage_at_once) {
  constexpr int rounds = 12;
  constexpr int finders = 4;
  std::filesystem::create_directories(settings);
  for (int round = 0; round < rounds; ++round) {
    fill(standardFile(), std::string(5000, 'x'));
    const Gate gate;
    std::deque<ChildProcess> children;
    for (int finder = 0; finder < finders; ++finder) {
      children.emplace_back([&, finder] {
        gate.waitFor();
        store(UserDefaults::standard(), "key" + std::to_string(finder), std::int64_t{round});
        return true;
      });
    }
    gate.open();
    std::string told;
    for (auto& child : children) {
      EXPECT_TRUE(child.wait());
      told += child.errors();
    }
    EXPECT_EQ(linesWith(told, "vorrin: "), 1) << told;
    for (int finder = 0; finder < finders; ++finder) {
      EXPECT_EQ(UserDefaults::standard().object("key" + std::to_string(finder)),
                DefaultsObject(std::int64_t{round}));
    }
    EXPECT_EQ(namesIn(settings).size(), 2u + static_cast<std::size_t>(round));
  }
}

TEST_F(UserDefaultsSharing, keeps_a_suite_made_while_others_remove_theirs) {
  constexpr int users = 4;
  const Gate gate;
  std::deque<ChildProcess> children;
  for (int user = 0; user < users; ++user) {
    children.emplace_back([&, user] {
      gate.waitFor();
      const auto name = "suite" + std::to_string(user);
      for (int i = 0; i < 8; ++i) {
        const auto suite = UserDefaults::suite(name);
        if (!suite) return false;
        store(*suite, "key", std::int64_t{i});
        if (suiteNamed(name).object("key") != DefaultsObject(std::int64_t{i})) return false;
        UserDefaults::removePersistentDomain(name);
      }
      return true;
    });
  }
  gate.open();
  for (auto& child : children) {
    EXPECT_TRUE(child.wait());
    EXPECT_EQ(child.errors(), "");
  }
  EXPECT_EQ(namesIn(settings), std::vector<std::string>{});
  EXPECT_EQ(namesIn(temporary), std::vector<std::string>{});
}

TEST_F(UserDefaultsSharing, waits_once_for_a_lock_that_is_never_released_and_tells_it_once) {
  using Clock = std::chrono::steady_clock;
  { store(UserDefaults::standard(), "key", true); }
  Locker locker(standardFile());
  ChildProcess child([&] {
    const auto defaults = UserDefaults::standard();
    const auto start = Clock::now();
    for (int i = 0; i < 20; ++i) {
      if (defaults.object("key")) return false;
      store(defaults, "key", std::int64_t{i});
    }
    // To wait each time would take forty seconds.
    return Clock::now() - start < std::chrono::seconds(20);
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(linesWith(child.errors(), ""), 1) << child.errors();
  EXPECT_EQ(linesWith(child.errors(), standardFile()), 1) << child.errors();
  locker.release();
  EXPECT_EQ(UserDefaults::standard().object("key"), DefaultsObject(true));
}

TEST_F(UserDefaultsSharing, works_again_when_a_lock_is_released) {
  const auto defaults = UserDefaults::standard();
  store(defaults, "key", std::int64_t{1});
  Locker locker(standardFile());
  store(defaults, "key", std::int64_t{2});
  EXPECT_FALSE(defaults.object("key"));
  locker.release();
  EXPECT_EQ(defaults.object("key"), DefaultsObject(std::int64_t{1}));
  store(defaults, "key", std::int64_t{3});
  EXPECT_EQ(defaults.object("key"), DefaultsObject(std::int64_t{3}));
}

TEST_F(UserDefaultsSharing, waits_for_a_lock_that_is_released_soon) {
  { store(UserDefaults::standard(), "key", std::int64_t{1}); }
  Locker locker(standardFile());
  locker.releaseSoon();
  store(UserDefaults::standard(), "key", std::int64_t{2});
  EXPECT_EQ(UserDefaults::standard().object("key"), DefaultsObject(std::int64_t{2}));
}

}  // namespace
}  // namespace vorrin
