#include "platform/run_loop.h"

#include "platform/macos/time/activity.h"
#include "platform/macos/time/timer_native.h"

namespace vorrin {

namespace {

template <typename Native>
void fire(const Native& native) {
  // The application's own pool is emptied only when the user does something.
  @autoreleasepool {
    // The block run may invalidate the timer.
    const auto block = native.block;
    if (block) (*block)();
  }
}

}  // namespace

RunLoop RunLoop::main() {
  return {};
}

void RunLoop::add(const Timer& timer, RunLoopMode mode) const {
  const std::shared_ptr<Timer::Native> native = timer.native_;
  if (native->block == nullptr || native->timer != nil) return;
  native->timer = [NSTimer timerWithTimeInterval:native->interval
                                         repeats:YES
                                           block:^(NSTimer*) {
                                             fire(*native);
                                           }];
  native->timer.tolerance = 0;
  // What even menus must not hold up, nothing may.
  if (mode == RunLoopMode::common) native->activity = beginActivity(Activity::repeating);
  [NSRunLoop.mainRunLoop
      addTimer:native->timer
       forMode:mode == RunLoopMode::common ? NSRunLoopCommonModes : NSDefaultRunLoopMode];
}

void RunLoop::runFor(double seconds) const {
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:seconds];
  [NSRunLoop.mainRunLoop runUntilDate:end];
  // A run loop with nothing attached returns at once.
  [NSThread sleepUntilDate:end];
}

}  // namespace vorrin
