#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include "platform/event_tap.h"

namespace vorrin {

/// Whether `type` is one of the two notices that the system sends through a tap when it has
/// disabled it. The event that comes with them has no fields, and may be null.
bool isTapDisabledNotice(CGEventType type);

/// The event of a tap, which is no such notice, as the program's own type.
TapEvent translatedEvent(CGEventType type, CGEventRef event);

}  // namespace vorrin
