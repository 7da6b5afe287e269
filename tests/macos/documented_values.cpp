#include <ApplicationServices/ApplicationServices.h>

// The numbers that the stand-in declares. Compiled against the stand-in where there is no Mac, and
// against Apple's own headers on a Mac or with its SDK: then they are what the system means by
// them.

static_assert(kCGSessionEventTap == 1);
static_assert(kCGHIDEventTap == 0);
static_assert(kCGHeadInsertEventTap == 0);
static_assert(kCGTailAppendEventTap == 1);
static_assert(kCGEventTapOptionDefault == 0);

static_assert(kCGEventLeftMouseDown == 1);
static_assert(kCGEventLeftMouseUp == 2);
static_assert(kCGEventKeyDown == 10);
static_assert(kCGEventKeyUp == 11);
static_assert(kCGEventTapDisabledByTimeout == 0xFFFFFFFE);
static_assert(kCGEventTapDisabledByUserInput == 0xFFFFFFFF);

static_assert(kCGKeyboardEventAutorepeat == 8);
static_assert(kCGKeyboardEventKeycode == 9);
static_assert(kCGEventSourceUserData == 42);

static_assert(kCGEventFlagMaskAlphaShift == 0x10000);
static_assert(kCGEventFlagMaskShift == 0x20000);
static_assert(kCGEventFlagMaskControl == 0x40000);
static_assert(kCGEventFlagMaskAlternate == 0x80000);
static_assert(kCGEventFlagMaskCommand == 0x100000);
static_assert(kCGEventFlagMaskNumericPad == 0x200000);

static_assert(kCGMouseButtonLeft == 0);
static_assert(CFNotificationSuspensionBehaviorDeliverImmediately == 4);
