#include "platform/macos/input/event_translation.h"

namespace vorrin {

// The seam's numbers are Quartz's own, so that translating is a cast.
static_assert(static_cast<CGEventType>(EventType::leftMouseDown) == kCGEventLeftMouseDown);
static_assert(static_cast<CGEventType>(EventType::leftMouseUp) == kCGEventLeftMouseUp);
static_assert(static_cast<CGEventType>(EventType::keyDown) == kCGEventKeyDown);
static_assert(static_cast<CGEventType>(EventType::keyUp) == kCGEventKeyUp);
static_assert(static_cast<CGEventType>(EventType::tapDisabledByTimeout) ==
              kCGEventTapDisabledByTimeout);
static_assert(static_cast<CGEventType>(EventType::tapDisabledByUserInput) ==
              kCGEventTapDisabledByUserInput);
static_assert(event_flags::maskAlphaShift == kCGEventFlagMaskAlphaShift);
static_assert(event_flags::maskShift == kCGEventFlagMaskShift);
static_assert(event_flags::maskControl == kCGEventFlagMaskControl);
static_assert(event_flags::maskAlternate == kCGEventFlagMaskAlternate);
static_assert(event_flags::maskCommand == kCGEventFlagMaskCommand);
static_assert(event_flags::maskNumericPad == kCGEventFlagMaskNumericPad);

bool isTapDisabledNotice(CGEventType type) {
  return type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput;
}

TapEvent translatedEvent(CGEventType type, CGEventRef event) {
  return {.type = static_cast<EventType>(type),
          .keyCode = CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode),
          .autorepeat = CGEventGetIntegerValueField(event, kCGKeyboardEventAutorepeat),
          .flags = static_cast<std::uint64_t>(CGEventGetFlags(event)),
          .userData = CGEventGetIntegerValueField(event, kCGEventSourceUserData)};
}

}  // namespace vorrin
