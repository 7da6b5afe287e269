#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/run_loop.h"
#include "platform/timer.h"

namespace vorrin {
namespace fake {

/// A timer of the fake clock. Times are in nanoseconds.
struct TimerState {
  std::int64_t interval = 0;
  std::function<void()> block;
  RunLoopMode mode = RunLoopMode::standard;
  std::int64_t due = 0;  ///< moment of the next firing, once scheduled
  bool valid = true;
  bool firing = false;
};

std::int64_t nanoseconds(double seconds);

/// Schedules `timer` for one interval from now, unless it is scheduled already or no longer valid.
void schedule(const std::shared_ptr<TimerState>& timer, RunLoopMode mode);

/// Ends `timer`; its block is released, at the latest when it returns.
void invalidate(const std::shared_ptr<TimerState>& timer);

}  // namespace fake

struct Timer::Native : fake::TimerState {};

}  // namespace vorrin
