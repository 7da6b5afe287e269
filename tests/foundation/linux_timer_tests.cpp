#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/linux/time/timely_timers.h"
#include "platform/run_loop.h"
#include "platform/timer.h"
#include "tests/foundation/defaults_sandbox.h"

// What only this system's timers have to do with or promise.

namespace vorrin {
namespace {

using Clock = std::chrono::steady_clock;

void schedule(const Timer& timer) {
  RunLoop::main().add(timer, RunLoopMode::common);
}

TEST(LinuxTimer, takes_intervals_without_sense_for_very_short_or_very_long_ones) {
  int often = 0;
  int never = 0;
  std::vector<Timer> timers;
  for (const double interval : {0.0, -1.0, std::nan("")}) {
    timers.emplace_back(interval, [&] { ++often; });
  }
  for (const double interval : {1e30, std::numeric_limits<double>::infinity()}) {
    timers.emplace_back(interval, [&] { ++never; });
  }
  for (const auto& timer : timers) schedule(timer);
  const auto start = Clock::now();
  while (often < 10 && Clock::now() - start < std::chrono::seconds(10)) {
    RunLoop::main().runFor(0.001);
  }
  EXPECT_GE(often, 10);
  EXPECT_EQ(never, 0);
  for (const auto& timer : timers) timer.invalidate();
}

TEST(LinuxTimer, gives_its_descriptor_back) {
  RunLoop::main().runFor(0.001);
  const auto before = openDescriptors();
  for (int i = 0; i < 20; ++i) {
    const Timer timer(0.001, [] {});
    schedule(timer);
    RunLoop::main().runFor(0.002);
    timer.invalidate();
  }
  EXPECT_EQ(openDescriptors(), before);
}

void scheduleWithoutDescriptors() {
  RunLoop::main().runFor(0.001);
  const rlimit none{.rlim_cur = 0, .rlim_max = 0};
  ::setrlimit(RLIMIT_NOFILE, &none);
  schedule(Timer(1, [] {}));
}

TEST(LinuxTimer, that_the_system_does_not_give_ends_the_process) {
  EXPECT_DEATH(scheduleWithoutDescriptors(), "The system gave no timer");
}

TEST(LinuxTimer, is_told_of_as_long_as_one_may_not_be_late) {
  std::vector<bool> told;
  observeTimelyTimers([&](bool exist) { told.push_back(exist); });
  const Timer first(1, [] {});
  const Timer second(1, [] {});
  const Timer ordinary(1, [] {});
  const Timer never(1, [] {});
  RunLoop::main().add(ordinary, RunLoopMode::standard);
  EXPECT_EQ(told, std::vector<bool>{});
  schedule(first);
  schedule(first);
  schedule(second);
  EXPECT_EQ(told, std::vector{true});
  first.invalidate();
  first.invalidate();
  never.invalidate();
  ordinary.invalidate();
  EXPECT_EQ(told, std::vector{true});
  second.invalidate();
  EXPECT_EQ(told, (std::vector{true, false}));
  observeTimelyTimers(nullptr);
}

}  // namespace
}  // namespace vorrin
