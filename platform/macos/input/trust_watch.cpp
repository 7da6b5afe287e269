#include "platform/macos/input/trust_watch.h"

#include <utility>

namespace vorrin {

namespace {

constexpr CFTimeInterval secondsBetweenChecks = 0.1;

void runCheck(void* check) {
  // A copy, since the check may end the watch.
  const auto kept = *static_cast<std::function<void()>*>(check);
  kept();
}

void timerFired(CFRunLoopTimerRef /*timer*/, void* check) {
  runCheck(check);
}

void grantsEdited(CFNotificationCenterRef /*center*/, void* check, CFNotificationName /*name*/,
                  const void* /*object*/, CFDictionaryRef /*userInfo*/) {
  runCheck(check);
}

}  // namespace

TrustWatch::TrustWatch(std::function<void()> check) : check_(std::move(check)) {
  CFRunLoopTimerContext context{};
  context.info = &check_;
  timer_.reset(CFRunLoopTimerCreate(kCFAllocatorDefault,
                                    CFAbsoluteTimeGetCurrent() + secondsBetweenChecks,
                                    secondsBetweenChecks, 0, 0, &timerFired, &context));
  CFRunLoopAddTimer(CFRunLoopGetMain(), timer_.get(), kCFRunLoopCommonModes);
  CFNotificationCenterAddObserver(CFNotificationCenterGetDistributedCenter(), &check_,
                                  &grantsEdited, CFSTR("com.apple.accessibility.api"), nullptr,
                                  CFNotificationSuspensionBehaviorDeliverImmediately);
}

TrustWatch::~TrustWatch() {
  CFNotificationCenterRemoveEveryObserver(CFNotificationCenterGetDistributedCenter(), &check_);
  CFRunLoopTimerInvalidate(timer_.get());
}

}  // namespace vorrin
