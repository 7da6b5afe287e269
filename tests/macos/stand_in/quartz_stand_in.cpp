#include "quartz_stand_in.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <type_traits>
#include <utility>

// Core Foundation's types, as far as the stand-in needs them. An object counts its references; the
// ones that the system keeps to itself are marked by the fields that refer to them.

struct StandInString {
  std::string text;
};
struct StandInAllocator {};
struct StandInBoolean {};
struct StandInRunLoop {};
struct StandInCenter {};

struct Counted {
  virtual ~Counted() = default;
  int references = 1;
};

struct StandInDictionary : Counted {
  std::map<const void*, const void*> entries;
};

struct StandInPort : Counted {
  CGEventTapCallBack callback = nullptr;
  void* userInfo = nullptr;
  CFMachPortInvalidationCallBack invalidated = nullptr;
  bool enabled = true;  // as the documentation says of a new tap
  bool valid = true;
  bool attached = false;
};

struct StandInSource : Counted {
  CFMachPortRef port = nullptr;
};

struct StandInTimer : Counted {
  CFRunLoopTimerCallBack callback = nullptr;
  void* info = nullptr;
  bool scheduled = false;
};

struct StandInEvent : Counted {
  QuartzStandIn::Event fields;
};

namespace {

struct Observation {
  CFNotificationCallback callback = nullptr;
  std::string name;
};

struct State {
  QuartzStandIn* standIn = nullptr;
  std::vector<std::unique_ptr<Counted>> objects;
  std::multimap<const void*, Observation> observers;
  std::size_t callsTaken = 0;
};

State& state() {
  static State current;
  return current;
}

QuartzStandIn& standIn() {
  return *state().standIn;
}

template <typename Object>
Object* made() {
  auto owned = std::make_unique<Object>();
  Object* object = owned.get();
  state().objects.push_back(std::move(owned));
  return object;
}

template <typename Argument>
std::string shown(const Argument& argument) {
  std::ostringstream text;
  if constexpr (std::is_same_v<Argument, CFStringRef>) {
    text << argument->text;
  } else if constexpr (std::is_null_pointer_v<Argument>) {
    text << "null";
  } else if constexpr (std::is_pointer_v<Argument>) {
    text << (argument == nullptr ? "null" : "object");
  } else if constexpr (std::is_same_v<Argument, CGPoint>) {
    text << argument.x << " " << argument.y;
  } else if constexpr (std::is_same_v<Argument, bool>) {
    text << (argument ? "true" : "false");
  } else if constexpr (std::is_enum_v<Argument>) {
    text << static_cast<std::underlying_type_t<Argument>>(argument);
  } else {
    text << argument;
  }
  return text.str();
}

template <typename... Arguments>
void record(const std::string& name, const Arguments&... arguments) {
  std::string call;
  ((call += (call.empty() ? "" : ", ") + shown(arguments)), ...);
  standIn().calls.push_back(name + "(" + call + ")");
}

bool refuses(std::uint32_t type) {
  const auto& refused = standIn().refusedEvents;
  return std::find(refused.begin(), refused.end(), type) != refused.end();
}

CFMachPortRef tap() {
  for (const auto& object : state().objects) {
    auto* port = dynamic_cast<CFMachPortRef>(object.get());
    if (port != nullptr && port->references > 0 && port->valid) return port;
  }
  return nullptr;
}

std::vector<CFRunLoopTimerRef> timers() {
  std::vector<CFRunLoopTimerRef> scheduled;
  for (const auto& object : state().objects) {
    auto* timer = dynamic_cast<CFRunLoopTimerRef>(object.get());
    if (timer != nullptr && timer->scheduled) scheduled.push_back(timer);
  }
  return scheduled;
}

CFStringRef constantString(const std::string& text) {
  static std::map<std::string, StandInString> strings;
  return &strings.emplace(text, StandInString{text}).first->second;
}

const StandInAllocator defaultAllocator;
const StandInBoolean trueValue;
StandInRunLoop mainRunLoop;
StandInCenter distributedCenter;

}  // namespace

QuartzStandIn::QuartzStandIn() {
  state() = State{.standIn = this, .objects = {}, .observers = {}};
}

QuartzStandIn::~QuartzStandIn() {
  state() = State{};
}

std::vector<std::string> QuartzStandIn::takeCalls() {
  const auto first = calls.begin() + static_cast<std::ptrdiff_t>(state().callsTaken);
  state().callsTaken = calls.size();
  return {first, calls.end()};
}

void QuartzStandIn::setFields(CGEventRef event, const Event& fields) {
  event->fields = fields;
}

bool QuartzStandIn::deliver(const Event& event) {
  CFMachPortRef port = tap();
  if (port == nullptr || !port->enabled || !port->attached) return true;
  StandInEvent delivered;
  delivered.fields = event;
  return port->callback(nullptr, static_cast<CGEventType>(event.type), &delivered,
                        port->userInfo) == &delivered;
}

bool QuartzStandIn::deliverNotice(std::uint32_t type) {
  StandInEvent delivered;
  CFMachPortRef port = tap();
  return port->callback(nullptr, static_cast<CGEventType>(type), &delivered, port->userInfo) ==
         &delivered;
}

bool QuartzStandIn::disableTap(std::uint32_t notice) {
  tap()->enabled = false;
  return deliverNotice(notice);
}

void QuartzStandIn::invalidatePort() {
  CFMachPortRef port = tap();
  port->valid = false;
  if (port->invalidated != nullptr) port->invalidated(port, nullptr);
}

void QuartzStandIn::fireTimers() {
  for (CFRunLoopTimerRef timer : timers()) timer->callback(timer, timer->info);
}

void QuartzStandIn::notify(const std::string& name) {
  const auto observers = state().observers;
  for (const auto& [observer, observation] : observers) {
    if (observation.name != name) continue;
    observation.callback(&distributedCenter, const_cast<void*>(observer), constantString(name),
                         nullptr, nullptr);
  }
}

std::optional<bool> QuartzStandIn::tapEnabled() const {
  CFMachPortRef port = tap();
  if (port == nullptr) return std::nullopt;
  return port->enabled;
}

bool QuartzStandIn::tapIsAttached() const {
  return tap() != nullptr && tap()->attached;
}

std::size_t QuartzStandIn::scheduledTimers() const {
  return timers().size();
}

std::size_t QuartzStandIn::liveObjects() const {
  const auto& objects = state().objects;
  return static_cast<std::size_t>(std::count_if(
      objects.begin(), objects.end(), [](const auto& object) { return object->references > 0; }));
}

// The functions themselves, by Apple's names.
// NOLINTBEGIN(readability-identifier-naming)

const CFAllocatorRef kCFAllocatorDefault = &defaultAllocator;
const CFBooleanRef kCFBooleanTrue = &trueValue;
const CFStringRef kCFRunLoopCommonModes = constantString("kCFRunLoopCommonModes");
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};
const CFStringRef kAXTrustedCheckOptionPrompt = constantString("AXTrustedCheckOptionPrompt");

CFStringRef CFSTR(const char* text) {
  return constantString(text);
}

void CFRelease(CFTypeRef object) {
  for (const auto& owned : state().objects) {
    if (dynamic_cast<const void*>(owned.get()) == object) --owned->references;
  }
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  return 1000;
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef /*allocator*/, const void** keys,
                                   const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* /*keyCallBacks*/,
                                   const CFDictionaryValueCallBacks* /*valueCallBacks*/) {
  auto* dictionary = made<StandInDictionary>();
  for (CFIndex i = 0; i < count; ++i) dictionary->entries[keys[i]] = values[i];
  return dictionary;
}

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef allocator, CFMachPortRef port,
                                                 CFIndex order) {
  record("CFMachPortCreateRunLoopSource",
         std::string(allocator == kCFAllocatorDefault ? "kCFAllocatorDefault" : "?"),
         std::string(port == tap() ? "tap" : "?"), order);
  auto* source = made<StandInSource>();
  source->port = port;
  return source;
}

void CFMachPortSetInvalidationCallBack(CFMachPortRef port,
                                       CFMachPortInvalidationCallBack callback) {
  port->invalidated = callback;
}

void CFMachPortInvalidate(CFMachPortRef port) {
  record("CFMachPortInvalidate", std::string(port == tap() ? "tap" : "?"));
  port->valid = false;
  if (port->invalidated != nullptr) port->invalidated(port, nullptr);
}

Boolean CFMachPortIsValid(CFMachPortRef port) {
  return port->valid ? 1 : 0;
}

CFRunLoopRef CFRunLoopGetMain() {
  return &mainRunLoop;
}

void CFRunLoopAddSource(CFRunLoopRef runLoop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  record("CFRunLoopAddSource", std::string(runLoop == &mainRunLoop ? "main" : "?"),
         std::string(source->port == tap() ? "source of tap" : "?"), mode);
  source->port->attached = true;
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef /*allocator*/, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags /*flags*/,
                                       CFIndex /*order*/, CFRunLoopTimerCallBack callback,
                                       CFRunLoopTimerContext* context) {
  record("CFRunLoopTimerCreate", fireDate, interval);
  auto* timer = made<StandInTimer>();
  timer->callback = callback;
  timer->info = context->info;
  return timer;
}

void CFRunLoopAddTimer(CFRunLoopRef runLoop, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
  record("CFRunLoopAddTimer", std::string(runLoop == &mainRunLoop ? "main" : "?"),
         std::string("timer"), mode);
  timer->scheduled = true;
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
  timer->scheduled = false;
}

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter() {
  return &distributedCenter;
}

void CFNotificationCenterAddObserver(CFNotificationCenterRef /*center*/, const void* observer,
                                     CFNotificationCallback callback, CFNotificationName name,
                                     const void* /*object*/,
                                     CFNotificationSuspensionBehavior /*suspensionBehavior*/) {
  state().observers.emplace(observer, Observation{callback, name->text});
}

void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef /*center*/,
                                             const void* observer) {
  state().observers.erase(observer);
}

Boolean AXIsProcessTrusted() {
  record("AXIsProcessTrusted");
  return standIn().trusted ? 1 : 0;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  const auto prompt = options->entries.find(kAXTrustedCheckOptionPrompt);
  const bool asks = prompt != options->entries.end() && prompt->second == kCFBooleanTrue;
  record("AXIsProcessTrustedWithOptions",
         std::string(asks ? "kAXTrustedCheckOptionPrompt: true" : "?"), options->entries.size());
  return standIn().trusted ? 1 : 0;
}

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement place,
                               CGEventTapOptions options, CGEventMask eventsOfInterest,
                               CGEventTapCallBack callback, void* userInfo) {
  record("CGEventTapCreate", location, place, options, eventsOfInterest, std::string("callback"),
         userInfo);
  if (standIn().refusesTaps) return nullptr;
  auto* port = made<StandInPort>();
  port->callback = callback;
  port->userInfo = userInfo;
  return port;
}

void CGEventTapEnable(CFMachPortRef port, bool enable) {
  record("CGEventTapEnable", std::string(port == tap() ? "tap" : "?"), enable);
  port->enabled = enable && !standIn().tapStaysOff;
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
  event->fields.location = standIn().pointer;
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
  standIn().posted.push_back(event->fields);
}

// NOLINTEND(readability-identifier-naming)
