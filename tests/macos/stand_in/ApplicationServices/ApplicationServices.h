#pragma once

#include <cstdint>

// The part of ApplicationServices and Core Foundation that platform/macos/input calls, declared as
// Apple's documentation states it, with the documented values. It lets those files compile and run
// where there is no Mac; quartz_stand_in.h says how tests see the calls and play events.

using Boolean = unsigned char;
using CFIndex = long;
using CFOptionFlags = unsigned long;
using CFTimeInterval = double;
using CFAbsoluteTime = double;

using CFTypeRef = const void*;
using CFAllocatorRef = const struct StandInAllocator*;
using CFStringRef = const struct StandInString*;
using CFBooleanRef = const struct StandInBoolean*;
using CFDictionaryRef = const struct StandInDictionary*;
using CFMachPortRef = struct StandInPort*;
using CFRunLoopRef = struct StandInRunLoop*;
using CFRunLoopSourceRef = struct StandInSource*;
using CFRunLoopTimerRef = struct StandInTimer*;
using CFNotificationCenterRef = struct StandInCenter*;
using CFRunLoopMode = CFStringRef;
using CFNotificationName = CFStringRef;

struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};

struct CFRunLoopTimerContext {
  CFIndex version;
  void* info;
  const void* (*retain)(const void* info);
  void (*release)(const void* info);
  CFStringRef (*copyDescription)(const void* info);
};

using CFMachPortInvalidationCallBack = void (*)(CFMachPortRef port, void* info);
using CFRunLoopTimerCallBack = void (*)(CFRunLoopTimerRef timer, void* info);
using CFNotificationCallback = void (*)(CFNotificationCenterRef center, void* observer,
                                        CFNotificationName name, const void* object,
                                        CFDictionaryRef userInfo);

enum CFNotificationSuspensionBehavior : CFIndex {
  CFNotificationSuspensionBehaviorDeliverImmediately = 4
};

extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFStringRef kCFRunLoopCommonModes;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
extern const CFStringRef kAXTrustedCheckOptionPrompt;

/// Apple's is a macro that gives a constant string.
CFStringRef CFSTR(const char* text);

void CFRelease(CFTypeRef object);
CFAbsoluteTime CFAbsoluteTimeGetCurrent();
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef allocator, CFMachPortRef port,
                                                 CFIndex order);
CFMachPortInvalidationCallBack CFMachPortGetInvalidationCallBack(CFMachPortRef port);
void CFMachPortSetInvalidationCallBack(CFMachPortRef port, CFMachPortInvalidationCallBack callback);
void CFMachPortInvalidate(CFMachPortRef port);
Boolean CFMachPortIsValid(CFMachPortRef port);

CFRunLoopRef CFRunLoopGetMain();
void CFRunLoopAddSource(CFRunLoopRef runLoop, CFRunLoopSourceRef source, CFRunLoopMode mode);
CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef allocator, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags flags, CFIndex order,
                                       CFRunLoopTimerCallBack callback,
                                       CFRunLoopTimerContext* context);
void CFRunLoopAddTimer(CFRunLoopRef runLoop, CFRunLoopTimerRef timer, CFRunLoopMode mode);
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter();
void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callback, CFNotificationName name,
                                     const void* object,
                                     CFNotificationSuspensionBehavior suspensionBehavior);
void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef center, const void* observer);

Boolean AXIsProcessTrusted();
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);

using CGEventRef = struct StandInEvent*;
using CGEventSourceRef = struct StandInEventSource*;
using CGEventTapProxy = struct StandInProxy*;
using CGEventMask = std::uint64_t;
using CGKeyCode = std::uint16_t;

struct CGPoint {
  double x;
  double y;
};

enum CGEventType : std::uint32_t {
  kCGEventLeftMouseDown = 1,
  kCGEventLeftMouseUp = 2,
  kCGEventKeyDown = 10,
  kCGEventKeyUp = 11,
  kCGEventTapDisabledByTimeout = 0xFFFFFFFE,
  kCGEventTapDisabledByUserInput = 0xFFFFFFFF
};

enum CGEventField : std::uint32_t {
  kCGKeyboardEventAutorepeat = 8,
  kCGKeyboardEventKeycode = 9,
  kCGEventSourceUserData = 42
};

enum CGEventFlags : std::uint64_t {
  kCGEventFlagMaskAlphaShift = 0x00010000,
  kCGEventFlagMaskShift = 0x00020000,
  kCGEventFlagMaskControl = 0x00040000,
  kCGEventFlagMaskAlternate = 0x00080000,
  kCGEventFlagMaskCommand = 0x00100000,
  kCGEventFlagMaskNumericPad = 0x00200000
};

enum CGMouseButton : std::uint32_t { kCGMouseButtonLeft = 0 };
enum CGEventTapLocation : std::uint32_t { kCGHIDEventTap = 0, kCGSessionEventTap = 1 };
enum CGEventTapPlacement : std::uint32_t { kCGHeadInsertEventTap = 0, kCGTailAppendEventTap = 1 };
enum CGEventTapOptions : std::uint32_t { kCGEventTapOptionDefault = 0 };

using CGEventTapCallBack = CGEventRef (*)(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                                          void* userInfo);

CFMachPortRef CGEventTapCreate(CGEventTapLocation tap, CGEventTapPlacement place,
                               CGEventTapOptions options, CGEventMask eventsOfInterest,
                               CGEventTapCallBack callback, void* userInfo);
void CGEventTapEnable(CFMachPortRef tap, bool enable);
bool CGEventTapIsEnabled(CFMachPortRef tap);

std::int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field);
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, std::int64_t value);
CGEventFlags CGEventGetFlags(CGEventRef event);
CGPoint CGEventGetLocation(CGEventRef event);
CGEventRef CGEventCreate(CGEventSourceRef source);
CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType type, CGPoint location,
                                   CGMouseButton button);
CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode keyCode, bool keyDown);
void CGEventPost(CGEventTapLocation tap, CGEventRef event);
