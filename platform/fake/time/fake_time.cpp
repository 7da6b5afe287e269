#include "platform/fake/time/fake_time.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/fake/time/timer_state.h"

namespace vorrin::fake {
namespace {

struct Clock {
  std::int64_t now = 0;
  bool tracking = false;
  std::vector<std::shared_ptr<TimerState>> scheduled;
};

Clock& clock() {
  static Clock instance;
  return instance;
}

bool isServed(const TimerState& timer) {
  return !timer.firing && (timer.mode == RunLoopMode::common || !clock().tracking);
}

/// The timer to fire next among those due by `end`, of equals the one scheduled first.
std::shared_ptr<TimerState> nextDue(std::int64_t end) {
  const std::shared_ptr<TimerState>* next = nullptr;
  for (const auto& timer : clock().scheduled) {
    if (!isServed(*timer) || timer->due > end) continue;
    if (next == nullptr || timer->due < (*next)->due) next = &timer;
  }
  return next == nullptr ? nullptr : *next;
}

void fire(TimerState& timer) {
  timer.firing = true;
  timer.block();
  timer.firing = false;
  if (!timer.valid) {
    timer.block = nullptr;
    return;
  }
  const std::int64_t passed = (clock().now - timer.due) / timer.interval;
  timer.due += (passed + 1) * timer.interval;
}

}  // namespace

std::int64_t nanoseconds(double seconds) {
  return std::llround(seconds * 1e9);
}

void schedule(const std::shared_ptr<TimerState>& timer, RunLoopMode mode) {
  auto& scheduled = clock().scheduled;
  if (!timer->valid || std::find(scheduled.begin(), scheduled.end(), timer) != scheduled.end()) {
    return;
  }
  timer->mode = mode;
  timer->due = clock().now + timer->interval;
  scheduled.push_back(timer);
}

void invalidate(const std::shared_ptr<TimerState>& timer) {
  timer->valid = false;
  std::erase(clock().scheduled, timer);
  if (!timer->firing) timer->block = nullptr;
}

void advance(double seconds) {
  const std::int64_t end = clock().now + nanoseconds(seconds);
  while (const auto timer = nextDue(end)) {
    clock().now = std::max(clock().now, timer->due);
    fire(*timer);
  }
  clock().now = std::max(clock().now, end);
}

void stall(double seconds) {
  clock().now += nanoseconds(seconds);
}

double now() {
  return static_cast<double>(clock().now) / 1e9;
}

void setTracking(bool tracking) {
  clock().tracking = tracking;
}

std::size_t scheduledTimers() {
  return clock().scheduled.size();
}

void resetTime() {
  while (!clock().scheduled.empty()) invalidate(std::shared_ptr(clock().scheduled.back()));
  clock() = {};
}

}  // namespace vorrin::fake
