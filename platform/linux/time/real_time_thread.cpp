#include "platform/linux/time/real_time_thread.h"

#include <sched.h>
#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace vorrin {

namespace {

// The kernel sends it to the very thread that computed for too long.
void computedTooLong(int) {
  const int error = errno;
  leaveRealTime();
  errno = error;
}

bool handleBound() {
  struct sigaction action {};
  action.sa_handler = computedTooLong;
  action.sa_flags = SA_RESTART;
  return ::sigaction(SIGXCPU, &action, nullptr) == 0;
}

bool setPolicy(int policy, int priority) {
  const sched_param parameters{.sched_priority = priority};
  // Programs started by this one begin as ordinary ones. The flag cannot be taken back later, so it
  // belongs to every call.
  return ::sched_setscheduler(0, policy | SCHED_RESET_ON_FORK, &parameters) == 0;
}

}  // namespace

bool boundRealTime() {
  rlimit limit{};
  if (!handleBound() || ::getrlimit(RLIMIT_RTTIME, &limit) != 0) return false;
  limit.rlim_max = std::min<rlim_t>(limit.rlim_max, realTimeEnd);
  // The kernel moved the first bound up by a second when it was reached.
  limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, realTimeBound);
  return ::setrlimit(RLIMIT_RTTIME, &limit) == 0;
}

bool enterRealTime() {
  return setPolicy(SCHED_RR, realTimePriority);
}

void leaveRealTime() {
  if ((::sched_getscheduler(0) & ~SCHED_RESET_ON_FORK) == SCHED_RR) setPolicy(SCHED_OTHER, 0);
}

}  // namespace vorrin
