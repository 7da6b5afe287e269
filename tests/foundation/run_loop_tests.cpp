#include "platform/run_loop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <chrono>
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
