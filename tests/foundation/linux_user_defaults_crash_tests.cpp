#include <gtest/gtest.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "platform/user_defaults.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using Values = std::vector<std::pair<std::string, DefaultsObject>>;

/// Whether `child`, stopped by PTRACE_SYSCALL, is about to make a system call that may change what
/// other processes find. To kill it before another call is the same as to kill it before the next.
bool isAtAnInstant(pid_t child) {
  __ptrace_syscall_info info{};
  ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
  constexpr std::array harmless = {
      SYS_brk,        SYS_clock_gettime, SYS_fstat,      SYS_futex,   SYS_getcwd,
      SYS_geteuid,    SYS_getpid,        SYS_lseek,      SYS_madvise, SYS_mmap,
      SYS_mprotect,   SYS_munmap,        SYS_newfstatat, SYS_pread64, SYS_read,
      SYS_readlinkat, SYS_rt_sigprocmask};
  return info.op == PTRACE_SYSCALL_INFO_ENTRY &&
         std::find(harmless.begin(), harmless.end(), static_cast<long>(info.entry.nr)) ==
             harmless.end();
}

/// Runs `body` in a child that is killed at its instant number `count`, from 0 on. False when it
/// ended before.
bool killedAtInstant(int count, const std::function<void()>& body) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    body();
    ::_exit(EXIT_SUCCESS);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD);
  for (int instants = 0; WIFSTOPPED(status) && instants <= count;) {
    ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    ::waitpid(child, &status, 0);
    if (WIFSTOPPED(status) && isAtAnInstant(child)) ++instants;
  }
  if (!WIFSTOPPED(status)) return false;
  ::kill(child, SIGKILL);
  ::waitpid(child, &status, 0);
  return true;
}

/// Three values that belong together.
Values generation(std::int64_t number) {
  const auto size = static_cast<std::size_t>(number * 7919 % 20'000);
  return {{"first", number},
          {"data", Data{std::string(size, static_cast<char>('a' + number % 26))}},
          {"last", number}};
}

bool storeGeneration(std::int64_t number) {
  return !UserDefaults::standard().set(generation(number));
}

/// The generation of which all values are stored; -1 when there are none, -2 when they are mixed.
std::int64_t storedGeneration() {
  const auto first = stored("first").value;
  if (!first) return stored("data").value || stored("last").value ? -2 : -1;
  const auto number = std::get<std::int64_t>(*first);
  for (const auto& [key, value] : generation(number)) {
    if (stored(key).value != value) return -2;
  }
  return number;
}

class UserDefaultsCrash : public DefaultsSandbox {};

TEST_F(UserDefaultsCrash, stores_all_values_or_none_when_killed_at_any_instant) {
  for (const std::int64_t before : {std::int64_t{-1}, std::int64_t{1}}) {
    int instant = 0;
    for (;; ++instant) {
      std::filesystem::remove_all(home / ".config");
      ASSERT_TRUE(before < 0 || storeGeneration(before));
      if (!killedAtInstant(instant, [] { storeGeneration(2); })) break;
      const auto found = storedGeneration();
      ASSERT_TRUE(found == before || found == 2) << found << " at instant " << instant;
      ASSERT_TRUE(storeGeneration(3)) << "after instant " << instant;
      ASSERT_EQ(namesIn(settings).size(), 1u) << "after instant " << instant;
    }
    EXPECT_EQ(storedGeneration(), 2);
    EXPECT_GE(instant, 5);
  }
}

TEST_F(UserDefaultsCrash, keeps_a_damaged_file_when_killed_at_any_instant_of_setting_it_aside) {
  const std::string damaged(5000, 'x');
  bool killed = true;
  for (int instant = 0; killed; ++instant) {
    std::filesystem::remove_all(settings);
    std::filesystem::create_directories(settings);
    fill(standardFile(), damaged);
    killed = killedAtInstant(instant, [] {
      ::close(STDERR_FILENO);
      storeGeneration(1);
    });
    ChildProcess child([] { return storeGeneration(2) && storedGeneration() == 2; });
    ASSERT_TRUE(child.wait()) << "at instant " << instant << ": " << child.errors();
    ASSERT_EQ(contentOf(settings / "org.vorrin.Vorrin.json.damaged"), damaged) << instant;
  }
}

TEST_F(UserDefaultsCrash, loses_no_value_of_processes_that_write_different_keys) {
  constexpr int writers = 4;
  constexpr std::int64_t writes = 25;
  const auto keyOf = [](int writer) { return "key" + std::to_string(writer); };
  std::deque<ChildProcess> children;
  for (int writer = 0; writer < writers; ++writer) {
    children.emplace_back([&, writer] {
      for (std::int64_t i = 1; i <= writes; ++i) {
        if (store(keyOf(writer), i) || stored(keyOf(writer)).value != DefaultsObject(i)) {
          return false;
        }
      }
      return true;
    });
  }
  for (auto& child : children) EXPECT_TRUE(child.wait()) << child.errors();
  for (int writer = 0; writer < writers; ++writer) {
    EXPECT_EQ(stored(keyOf(writer)).value, DefaultsObject(writes));
  }
  EXPECT_EQ(namesIn(settings), std::vector<std::string>{"org.vorrin.Vorrin.json"});
}

}  // namespace
}  // namespace vorrin
