#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <vector>

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

}  // namespace
}  // namespace vorrin
