#include "platform/macos/input/trust.h"

#include "platform/macos/input/core_foundation_handle.h"

namespace vorrin {

namespace {

constexpr CFTimeInterval secondsBetweenLooks = 1;

Trust known;
int looksToCome = 0;
CFAbsoluteTime nextLook = 0;

CGEventRef passOn(CGEventTapProxy /*proxy*/, CGEventType /*type*/, CGEventRef event,
                  void* /*userInfo*/) {
  return event;
}

// Not documented. It comes round when the list of granted programs is edited.
void grantsEdited(CFNotificationCenterRef /*center*/, void* /*observer*/,
                  CFNotificationName /*name*/, const void* /*object*/,
                  CFDictionaryRef /*userInfo*/) {
  looksToCome = 2;
}

void lookIfDue() {
  const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
  if (looksToCome == 0 || now < nextLook) return;
  --looksToCome;
  nextLook = now + secondsBetweenLooks;
  confirmTrust();
}

}  // namespace

bool confirmTrust() {
  const CoreFoundationHandle<CFMachPortRef> port(
      CGEventTapCreate(kCGSessionEventTap, kCGTailAppendEventTap, kCGEventTapOptionDefault,
                       CGEventMask{1} << kCGEventKeyDown, &passOn, nullptr));
  // Takes it out of the event path, which releasing it does not.
  if (port) CFMachPortInvalidate(port.get());
  known.trusted = port != nullptr;
  return known.trusted;
}

void watchGrants() {
  const CFNotificationCenterRef center = CFNotificationCenterGetDistributedCenter();
  CFNotificationCenterRemoveEveryObserver(center, &known);
  CFNotificationCenterAddObserver(center, &known, &grantsEdited,
                                  CFSTR("com.apple.accessibility.api"), nullptr,
                                  CFNotificationSuspensionBehaviorDeliverImmediately);
}

bool noteTrust(bool told) {
  if (told != known.told) {
    known = {.told = told, .trusted = told};
    looksToCome = 0;
  }
  lookIfDue();
  return known.trusted;
}

Trust knownTrust() {
  return known;
}

}  // namespace vorrin
