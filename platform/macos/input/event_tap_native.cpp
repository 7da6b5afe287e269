#include "platform/macos/input/event_tap_native.h"

#include <utility>

#include "platform/accessibility.h"
#include "platform/macos/input/event_translation.h"
#include "platform/macos/input/trust.h"
#include "platform/macos/time/activity.h"

namespace vorrin {

namespace {

// Taps that are disabled this often in this time hold the keyboard up more than they listen.
constexpr int timesToGiveUpAfter = 3;
constexpr CFTimeInterval secondsToGiveUpIn = 60;
int timesDisabled = 0;
CFAbsoluteTime firstDisabled = 0;

void countDisabling() {
  const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
  if (now - firstDisabled > secondsToGiveUpIn) {
    firstDisabled = now;
    timesDisabled = 0;
  }
  ++timesDisabled;
}

/// For the rest of the process, since no tap is left to be disabled.
bool isGivenUp() {
  return timesDisabled >= timesToGiveUpAfter;
}

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
  if (isGivenUp() || !isProcessTrusted()) return nullptr;
  CoreFoundationHandle<CFMachPortRef> port(
      CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault, mask,
                       &Native::filter, nullptr));
  if (!port) return nullptr;
  std::shared_ptr<Native> tap(new Native(std::move(port), callback, std::move(invalidated)));
  current<Native>() = tap;
  return tap;
}

EventTap::Native::Native(CoreFoundationHandle<CFMachPortRef> port, Callback callback,
                         std::function<void()> invalidated)
    : port_(std::move(port)),
      systemsCallback_(CFMachPortGetInvalidationCallBack(port_.get())),
      callback_(callback),
      invalidated_(std::move(invalidated)),
      activity_(beginActivity(Activity::listening)) {
  CFMachPortSetInvalidationCallBack(port_.get(), &Native::portInvalidated);
}

EventTap::Native::~Native() {
  trustWatch_.reset();
  CFMachPortSetInvalidationCallBack(port_.get(), systemsCallback_);
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
  trustWatch_.emplace([this] { lookAfter(); });
}

void EventTap::Native::setEnabled(bool enabled) {
  wanted_ = enabled;
  const bool isOn = CGEventTapIsEnabled(port_.get());
  deliver(wanted_ && isProcessTrusted() && (isOn || confirmTrust()));
}

void EventTap::Native::deliver(bool on) {
  CGEventTapEnable(port_.get(), on);
  delivering_ = on;
}

void EventTap::Native::lookAfter() {
  const std::shared_ptr<Native> kept = current<Native>().lock();
  const bool trusted = isProcessTrusted();
  if (delivering_ && !trusted) {
    deliver(false);
    callback_({.type = EventType::tapDisabledByUserInput});
  } else if (delivering_ && !CGEventTapIsEnabled(port_.get())) {
    wasDisabled(EventType::tapDisabledByTimeout);  // and nobody told
  } else if (!delivering_ && wanted_ && trusted) {
    setEnabled(true);
  }
  const Trust known = knownTrust();
  // As good as gone is a tap that is off when it is wanted and allowed, and one whose grant was
  // deleted: nothing but another tap will show that the grant is back.
  if ((delivering_ && !CGEventTapIsEnabled(port_.get())) || (known.told && !known.trusted)) {
    tellInvalidated();
  }
}

void EventTap::Native::wasDisabled(EventType notice) {
  // Otherwise this program did it, or has seen and mended it before it was told.
  if (delivering_ && !CGEventTapIsEnabled(port_.get())) {
    delivering_ = false;
    countDisabling();
  }
  if (isGivenUp()) {
    tellInvalidated();
  } else {
    callback_({.type = notice});
  }
}

CGEventRef EventTap::Native::filter(CGEventTapProxy /*proxy*/, CGEventType type, CGEventRef event,
                                    void* /*userInfo*/) {
  const std::shared_ptr<Native> tap = current<Native>().lock();
  if (!tap) return event;
  if (isTapDisabledNotice(type)) {
    tap->wasDisabled(static_cast<EventType>(type));
    return event;
  }
  const TapVerdict verdict = tap->callback_(translatedEvent(type, event));
  return verdict == TapVerdict::swallow ? nullptr : event;
}

void EventTap::Native::portInvalidated(CFMachPortRef port, void* info) {
  const std::shared_ptr<Native> tap = current<Native>().lock();
  if (!tap) return;
  if (tap->systemsCallback_ != nullptr) tap->systemsCallback_(port, info);
  tap->tellInvalidated();
}

void EventTap::Native::tellInvalidated() {
  trustWatch_.reset();
  const auto invalidated = std::exchange(invalidated_, nullptr);
  if (invalidated) invalidated();
}

}  // namespace vorrin
