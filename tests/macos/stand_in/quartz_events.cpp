#include <algorithm>

#include "objects.h"

// The functions of the Accessibility and Quartz event services that platform/macos/input calls, by
// Apple's names.

using stand_in::constantString;
using stand_in::current;
using stand_in::made;
using stand_in::record;

namespace {

bool refuses(std::uint32_t type) {
  const auto& refused = current().refusedEvents;
  return std::find(refused.begin(), refused.end(), type) != refused.end();
}

void systemsOwnCallback(CFMachPortRef port, void* /*info*/) {
  record("systemsOwnCallback", port->name);
}

}  // namespace

// NOLINTBEGIN(readability-identifier-naming)

const CFStringRef kAXTrustedCheckOptionPrompt = constantString("AXTrustedCheckOptionPrompt");

Boolean AXIsProcessTrusted() {
  record("AXIsProcessTrusted");
  return current().trusted ? 1 : 0;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  const auto prompt = options->entries.find(kAXTrustedCheckOptionPrompt);
  const bool asks = prompt != options->entries.end() && prompt->second == kCFBooleanTrue;
  record("AXIsProcessTrustedWithOptions",
         std::string(asks ? "kAXTrustedCheckOptionPrompt: true" : "?"), options->entries.size());
  return current().trusted ? 1 : 0;
}

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement place,
                               CGEventTapOptions options, CGEventMask eventsOfInterest,
                               CGEventTapCallBack callback, void* userInfo) {
  record("CGEventTapCreate", location, place, options, eventsOfInterest, std::string("callback"),
         userInfo);
  if (current().refusesTaps) return nullptr;
  auto* port = made<StandInPort>();
  port->name = place == kCGHeadInsertEventTap ? "tap" : "probe";
  port->invalidated = &systemsOwnCallback;
  port->callback = callback;
  port->userInfo = userInfo;
  return port;
}

void CGEventTapEnable(CFMachPortRef port, bool enable) {
  record("CGEventTapEnable", port->name, enable);
  port->enabled = enable && !current().tapStaysOff;
}

bool CGEventTapIsEnabled(CFMachPortRef port) {
  return port->enabled;
}

std::int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field) {
  record("CGEventGetIntegerValueField", std::string("event"), field);
  switch (field) {
    case kCGKeyboardEventAutorepeat:
      return event->fields.autorepeat;
    case kCGKeyboardEventKeycode:
      return event->fields.keyCode;
    case kCGEventSourceUserData:
      return event->fields.userData;
  }
  return 0;
}

void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, std::int64_t value) {
  record("CGEventSetIntegerValueField", std::string("event"), field, value);
  if (field == kCGEventSourceUserData) event->fields.userData = value;
}

CGEventFlags CGEventGetFlags(CGEventRef event) {
  record("CGEventGetFlags", std::string("event"));
  return static_cast<CGEventFlags>(event->fields.flags);
}

CGPoint CGEventGetLocation(CGEventRef event) {
  record("CGEventGetLocation", std::string("event"));
  return event->fields.location;
}

CGEventRef CGEventCreate(CGEventSourceRef source) {
  record("CGEventCreate", source);
  if (refuses(0)) return nullptr;
  auto* event = made<StandInEvent>();
  event->fields.location = current().pointer;
  return event;
}

CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType type, CGPoint location,
                                   CGMouseButton button) {
  record("CGEventCreateMouseEvent", source, type, location, button);
  if (refuses(type)) return nullptr;
  auto* event = made<StandInEvent>();
  event->fields.type = type;
  event->fields.location = location;
  return event;
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode keyCode, bool keyDown) {
  const CGEventType type = keyDown ? kCGEventKeyDown : kCGEventKeyUp;
  record("CGEventCreateKeyboardEvent", source, keyCode, keyDown);
  if (refuses(type)) return nullptr;
  auto* event = made<StandInEvent>();
  event->fields.type = type;
  event->fields.keyCode = keyCode;
  return event;
}

void CGEventPost(CGEventTapLocation location, CGEventRef event) {
  record("CGEventPost", location, std::string("event"));
  current().posted.push_back(event->fields);
}

// NOLINTEND(readability-identifier-naming)
