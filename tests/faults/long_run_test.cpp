#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <vector>

#include "amounts.h"
#include "tap_process.h"
#include "tests/x11/harness/server.h"

namespace vorrin::faults {
namespace {

using namespace x11_tests;

/// The memory that a process occupies, in bytes.
std::int64_t residentMemory(pid_t process) {
  std::ifstream statm("/proc/" + std::to_string(process) + "/statm");
  std::int64_t whole = 0;
  std::int64_t resident = 0;
  statm >> whole >> resident;
  return resident * ::sysconf(_SC_PAGESIZE);
}

constexpr std::int64_t mebibyte = 1 << 20;

TEST(LongRun, posting_for_very_long_takes_no_more_memory) {
  const std::int64_t ticks = amount("TICKS", 20'000);
  constexpr std::int64_t inOneGo = 500;
  // The sanitizer keeps what was freed for a while.
  ::setenv("ASAN_OPTIONS", "quarantine_size_mb=1:thread_local_quarantine_size_kb=64", 1);
  Desktop desktop;
  TapProcess tap(desktop.display());
  ::unsetenv("ASAN_OPTIONS");
  ASSERT_TRUE(tap.command("create 50 48"));
  const auto post = [&](std::int64_t count) {
    for (std::int64_t done = 0; done < count; done += inOneGo) {
      ASSERT_TRUE(tap.command("post 18 7 " + std::to_string(inOneGo / 2)));
      ASSERT_TRUE(tap.command("click " + std::to_string(inOneGo / 2)));
    }
  };
  const auto growth = [&] {
    const std::int64_t before = residentMemory(tap.process().id());
    post(ticks);
    return residentMemory(tap.process().id()) - before;
  };
  // Buffers and what the sanitizer keeps reach their size in the first rounds; a leak grows in all.
  std::vector<std::int64_t> rounds;
  do {
    rounds.push_back(growth());
  } while (rounds.back() >= mebibyte && rounds.size() < 5);
  EXPECT_LT(rounds.back(), mebibyte) << testing::PrintToString(rounds);
}

}  // namespace
}  // namespace vorrin::faults
