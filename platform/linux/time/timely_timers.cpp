#include "platform/linux/time/timely_timers.h"

#include <utility>

namespace vorrin {

namespace {

struct TimelyTimers {
  int count = 0;
  std::function<void(bool exist)> changed;
};

TimelyTimers& timelyTimers() {
  // Never destroyed: timers may outlive every other static object.
  static auto& timers = *new TimelyTimers;
  return timers;
}

void tell(bool exist) {
  if (const auto& changed = timelyTimers().changed) changed(exist);
}

}  // namespace

void timelyTimerWasScheduled() {
  if (++timelyTimers().count == 1) tell(true);
}

void timelyTimerEnded() {
  if (--timelyTimers().count == 0) tell(false);
}

void observeTimelyTimers(std::function<void(bool exist)> changed) {
  timelyTimers().changed = std::move(changed);
}

}  // namespace vorrin
