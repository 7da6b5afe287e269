#include "platform/run_loop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "platform/timer.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using Clock = std::chrono::steady_clock;

double secondsFrom(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

TEST(RunLoop, runs_for_as_long_as_asked) {
  const auto start = Clock::now();
  RunLoop::main().runFor(0);
  RunLoop::main().runFor(-1);
  EXPECT_LT(secondsFrom(start), 1.0);
  RunLoop::main().runFor(0.05);
  EXPECT_GE(secondsFrom(start), 0.05);
  EXPECT_LT(secondsFrom(start), 2.0);
}

TEST(RunLoop, serves_timers_of_both_modes) {
  int standard = 0;
  int common = 0;
  const Timer first(0.005, [&] { ++standard; });
  const Timer second(0.005, [&] { ++common; });
  RunLoop::main().add(first, RunLoopMode::standard);
  RunLoop::main().add(second, RunLoopMode::common);
  RunLoop::main().runFor(0.1);
  first.invalidate();
  second.invalidate();
  EXPECT_GT(standard, 0);
  EXPECT_GT(common, 0);
}

TEST(RunLoop, runs_within_itself) {
  const auto start = Clock::now();
  double inner = 0;
  const Timer timer(0.001, [&] {
    if (inner > 0) return;
    RunLoop::main().runFor(0.05);
    inner = secondsFrom(start);
  });
  RunLoop::main().add(timer, RunLoopMode::common);
  RunLoop::main().runFor(0.01);
  timer.invalidate();
  EXPECT_GE(inner, 0.05);
}

TEST(RunLoop, keeps_a_timer_alive_and_needs_no_application_no_display_and_no_session) {
  ChildProcess child([] {  // ends with the timer, which nobody can invalidate
    ::clearenv();
    int count = 0;
    RunLoop::main().add(Timer(0.001, [&] { ++count; }), RunLoopMode::common);
    RunLoop::main().runFor(0.1);
    return count > 1;
  });
  EXPECT_TRUE(child.wait());
  EXPECT_EQ(child.errors(), "");
}

/// The descriptors that a program started by this process would get.
std::vector<std::string> inheritableDescriptors() {
  auto names = namesIn("/proc/self/fd");
  std::erase_if(names, [](const std::string& name) {
    const int flags = ::fcntl(std::stoi(name), F_GETFD);
    return flags < 0 || (flags & FD_CLOEXEC) != 0;
  });
  return names;
}

TEST(RunLoop, lets_the_kernel_delay_no_wait_and_hands_on_no_descriptor) {
  const auto before = inheritableDescriptors();
  const Timer timer(1, [] {});
  RunLoop::main().add(timer, RunLoopMode::common);
  EXPECT_EQ(::prctl(PR_GET_TIMERSLACK), 1);
  EXPECT_EQ(inheritableDescriptors(), before);
  timer.invalidate();
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
  for (const auto& timer : timers) RunLoop::main().add(timer, RunLoopMode::common);
  const auto start = Clock::now();
  while (often < 10 && secondsFrom(start) < 10) RunLoop::main().runFor(0.001);
  EXPECT_GE(often, 10);
  EXPECT_EQ(never, 0);
  for (const auto& timer : timers) timer.invalidate();
}

TEST(LinuxTimer, gives_its_descriptor_back) {
  RunLoop::main().runFor(0.001);
  const auto before = namesIn("/proc/self/fd");
  for (int i = 0; i < 20; ++i) {
    const Timer timer(0.001, [] {});
    RunLoop::main().add(timer, RunLoopMode::common);
    RunLoop::main().runFor(0.002);
    timer.invalidate();
  }
  EXPECT_EQ(namesIn("/proc/self/fd"), before);
}

}  // namespace
}  // namespace vorrin
