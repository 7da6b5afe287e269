#include "platform/macos/input/event_tap_native.h"

#include <utility>

#include "platform/accessibility.h"
#include "platform/macos/input/event_translation.h"

namespace vorrin {

namespace {

// The C functions called by the system get no pointer to the tap: the tap's user-info pointer is
// null, and the port's invalidation notice has none that the creator of a tap could set.
template <typename Native>
std::weak_ptr<Native>& current() {
  static std::weak_ptr<Native> tap;
  return tap;
}

}  // namespace

std::shared_ptr<EventTap::Native> EventTap::Native::create(std::uint64_t mask, Callback callback,
                                                           std::function<void()> invalidated) {
  // A tap refused for want of trust leaks a Mach port each time.
  if (!isProcessTrusted()) return nullptr;
  CoreFoundationHandle<CFMachPortRef> port(
      CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault, mask,
                       &Native::filter, nullptr));
  if (!port) return nullptr;
  CFMachPortSetInvalidationCallBack(port.get(), &Native::portInvalidated);
  std::shared_ptr<Native> tap(new Native(std::move(port), callback, std::move(invalidated)));
  current<Native>() = tap;
  return tap;
}

EventTap::Native::Native(CoreFoundationHandle<CFMachPortRef> port, Callback callback,
                         std::function<void()> invalidated)
    : port_(std::move(port)), callback_(callback), invalidated_(std::move(invalidated)) {}

EventTap::Native::~Native() {
  trustWatch_.reset();
  CFMachPortSetInvalidationCallBack(port_.get(), nullptr);
  if (CFMachPortIsValid(port_.get()) == 0) return;
  deliver(false);
  // Takes the tap out of the event path and its run-loop source with it; releasing alone does not.
  CFMachPortInvalidate(port_.get());
}

void EventTap::Native::addToMainRunLoop() {
  const CoreFoundationHandle<CFRunLoopSourceRef> source(
      CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port_.get(), 0));
  // None for a port that has ended meanwhile; its notice is on its way.
  if (!source) return;
  CFRunLoopAddSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
  trustWatch_.emplace([this] { trustMayHaveChanged(); });
}

void EventTap::Native::setEnabled(bool enabled) {
  wanted_ = enabled;
  deliver(wanted_ && isProcessTrusted());
}

void EventTap::Native::deliver(bool on) {
  CGEventTapEnable(port_.get(), on);
  delivering_ = on;
}

void EventTap::Native::trustMayHaveChanged() {
  const std::shared_ptr<Native> kept = current<Native>().lock();
  const bool trusted = isProcessTrusted();
  if (delivering_ && !trusted) {
    deliver(false);
    callback_({.type = EventType::tapDisabledByUserInput});
  } else if (!delivering_ && wanted_ && trusted) {
    deliver(true);
    // A tap that a new grant does not bring back is as good as gone.
    if (!CGEventTapIsEnabled(port_.get())) tellInvalidated();
  }
}

CGEventRef EventTap::Native::filter(CGEventTapProxy /*proxy*/, CGEventType type, CGEventRef event,
                                    void* /*userInfo*/) {
  const std::shared_ptr<Native> tap = current<Native>().lock();
  if (!tap) return event;
  const TapVerdict verdict = tap->callback_(translatedEvent(type, event));
  return verdict == TapVerdict::swallow && !isTapDisabledNotice(type) ? nullptr : event;
}

void EventTap::Native::portInvalidated(CFMachPortRef /*port*/, void* /*info*/) {
  if (const std::shared_ptr<Native> tap = current<Native>().lock()) tap->tellInvalidated();
}

void EventTap::Native::tellInvalidated() {
  trustWatch_.reset();
  const auto invalidated = std::exchange(invalidated_, nullptr);
  if (invalidated) invalidated();
}

}  // namespace vorrin
