#include "platform/macos/input/trust_watch.h"

#include <utility>

namespace vorrin {

namespace {

constexpr CFTimeInterval secondsBetweenChecks = 0.1;

void timerFired(CFRunLoopTimerRef /*timer*/, void* check) {
  // A copy, since the check may end the watch.
  const auto kept = *static_cast<std::function<void()>*>(check);
  kept();
}

}  // namespace

TrustWatch::TrustWatch(std::function<void()> check) : check_(std::move(check)) {
  CFRunLoopTimerContext context{};
  context.info = &check_;
  timer_.reset(CFRunLoopTimerCreate(kCFAllocatorDefault,
                                    CFAbsoluteTimeGetCurrent() + secondsBetweenChecks,
                                    secondsBetweenChecks, 0, 0, &timerFired, &context));
  CFRunLoopAddTimer(CFRunLoopGetMain(), timer_.get(), kCFRunLoopCommonModes);
}

TrustWatch::~TrustWatch() {
  CFRunLoopTimerInvalidate(timer_.get());
}

}  // namespace vorrin
