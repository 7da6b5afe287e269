#include "platform/linux/time/real_time.h"

#include <gtest/gtest.h>
#include <sched.h>

#include <chrono>

#include "platform/run_loop.h"
#include "tests/foundation/child_process.h"

// Where this process has no right to run in real time, it stays an ordinary one in all of these.

namespace vorrin {
namespace {

int policy() {
  return ::sched_getscheduler(0) & ~SCHED_RESET_ON_FORK;
}

/// Computes, waiting for nothing, until the thread is an ordinary one or far more than the bound is
/// over. Whether it is an ordinary one.
bool computeUntilOrdinary() {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (std::chrono::steady_clock::now() < end) {
    if (policy() == SCHED_OTHER) return true;
  }
  return false;
}

/// What `body` does to the scheduling of its process ends with that.
void inChild(bool (*body)()) {
  ChildProcess child(body);
  EXPECT_TRUE(child.wait()) << child.errors();
}

TEST(RealTime, lasts_until_it_is_left) {
  inChild([] {
    const bool entered = enterRealTime();
    if (policy() != (entered ? SCHED_RR : SCHED_OTHER)) return false;
    leaveRealTime();
    return policy() == SCHED_OTHER;
  });
}

TEST(RealTime, is_not_passed_on_to_started_programs) {
  inChild([] {
    static_cast<void>(enterRealTime());
    ChildProcess started([] { return policy() == SCHED_OTHER; });
    return started.wait();
  });
}

TEST(RealTime, is_lost_by_computing_for_too_long_each_time) {
  inChild([] {
    for (int i = 0; i < 2; ++i) {
      static_cast<void>(enterRealTime());
      if (!computeUntilOrdinary()) return false;
    }
    return true;
  });
}

TEST(RealTime, lasts_while_a_timer_that_must_not_be_late_is_scheduled) {
  inChild([] {
    const int inTime = enterRealTime() ? SCHED_RR : SCHED_OTHER;
    leaveRealTime();
    useRealTime();
    const Timer first(1, [] {});
    const Timer second(1, [] {});
    const Timer ordinary(1, [] {});
    RunLoop::main().add(ordinary, RunLoopMode::standard);
    bool isRight = policy() == SCHED_OTHER;
    for (const Timer& timer : {first, first, second}) {
      RunLoop::main().add(timer, RunLoopMode::common);
      isRight = isRight && policy() == inTime;
    }
    first.invalidate();
    first.invalidate();
    isRight = isRight && policy() == inTime;
    second.invalidate();
    return isRight && policy() == SCHED_OTHER;
  });
}

}  // namespace
}  // namespace vorrin
