#include "platform/timer.h"

#include <utility>

#include "platform/macos/time/timer_native.h"

namespace vorrin {

Timer::Timer(double interval, std::function<void()> block) : native_(std::make_shared<Native>()) {
  native_->interval = interval;
  native_->block = std::make_shared<const std::function<void()>>(std::move(block));
}

void Timer::invalidate() const {
  // The NSTimer's block may be the last to hold the native object.
  const std::shared_ptr<Native> native = native_;
  [native->timer invalidate];
  native->timer = nil;
  native->activity.reset();
  native->block = nullptr;
}

bool Timer::isValid() const {
  return native_->block != nullptr;
}

}  // namespace vorrin
