#include "platform/timer.h"

#include <utility>

#include "platform/fake/time/timer_state.h"
#include "platform/fatal_error.h"

namespace vorrin {

Timer::Timer(double interval, std::function<void()> block) : native_(std::make_shared<Native>()) {
  native_->interval = fake::nanoseconds(interval);
  precondition(native_->interval > 0, "a timer's interval is above 0");
  native_->block = std::move(block);
}

void Timer::invalidate() const {
  fake::invalidate(native_);
}

bool Timer::isValid() const {
  return native_->valid;
}

}  // namespace vorrin
