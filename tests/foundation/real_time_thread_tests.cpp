#include "platform/linux/time/real_time_thread.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>

#include <chrono>

#include "tests/foundation/child_process.h"

// Where this process has no right to run in real time, it stays an ordinary one in all of these.

namespace vorrin {
namespace {

int policy() {
  return ::sched_getscheduler(0) & ~SCHED_RESET_ON_FORK;
}

bool enterBounded() {
  return boundRealTime() && enterRealTime();
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

TEST(RealTimeThread, is_one_until_it_leaves) {
  inChild([] {
    const bool entered = enterBounded();
    if (policy() != (entered ? SCHED_RR : SCHED_OTHER)) return false;
    leaveRealTime();
    return policy() == SCHED_OTHER;
  });
}

TEST(RealTimeThread, does_not_pass_it_on_to_the_programs_it_starts) {
  inChild([] {
    static_cast<void>(enterBounded());
    ChildProcess started([] { return policy() == SCHED_OTHER; });
    return started.wait();
  });
}

TEST(RealTimeThread, becomes_an_ordinary_one_by_computing_for_too_long_each_time) {
  inChild([] {
    for (int i = 0; i < 2; ++i) {
      static_cast<void>(enterBounded());
      if (!computeUntilOrdinary()) return false;
    }
    return true;
  });
}

TEST(RealTimeThread, keeps_bounds_that_are_tighter_already) {
  inChild([] {
    const rlimit tight{.rlim_cur = 1'000, .rlim_max = 50'000};
    if (::setrlimit(RLIMIT_RTTIME, &tight) != 0 || !boundRealTime()) return false;
    rlimit bounds{};
    ::getrlimit(RLIMIT_RTTIME, &bounds);
    return bounds.rlim_max == tight.rlim_max && bounds.rlim_cur <= bounds.rlim_max;
  });
}

}  // namespace
}  // namespace vorrin
