#include "objects.h"

// The functions of Core Foundation that platform/macos/input calls, by Apple's names.

using stand_in::constantString;
using stand_in::current;
using stand_in::made;
using stand_in::Observation;
using stand_in::record;
using stand_in::state;

namespace {

const StandInAllocator defaultAllocator;
const StandInBoolean trueValue;
StandInRunLoop mainRunLoop;
StandInCenter distributedCenter;

}  // namespace

// NOLINTBEGIN(readability-identifier-naming)

const CFAllocatorRef kCFAllocatorDefault = &defaultAllocator;
const CFBooleanRef kCFBooleanTrue = &trueValue;
const CFStringRef kCFRunLoopCommonModes = constantString("kCFRunLoopCommonModes");
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFStringRef CFSTR(const char* text) {
  return constantString(text);
}

void CFRelease(CFTypeRef object) {
  for (const auto& owned : state().objects) {
    if (dynamic_cast<const void*>(owned.get()) == object) --owned->references;
  }
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  return current().now;
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
         std::string(allocator == kCFAllocatorDefault ? "kCFAllocatorDefault" : "?"), port->name,
         order);
  auto* source = made<StandInSource>();
  source->port = port;
  return source;
}

CFMachPortInvalidationCallBack CFMachPortGetInvalidationCallBack(CFMachPortRef port) {
  return port->invalidated;
}

void CFMachPortSetInvalidationCallBack(CFMachPortRef port,
                                       CFMachPortInvalidationCallBack callback) {
  port->invalidated = callback;
}

void CFMachPortInvalidate(CFMachPortRef port) {
  record("CFMachPortInvalidate", port->name);
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
         "source of " + source->port->name, mode);
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

// NOLINTEND(readability-identifier-naming)
