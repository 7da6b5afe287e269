#pragma once

#include <cstdint>

#include "platform/event_tap.h"

namespace vorrin {

/// The bit that stands for `type` in a tap's mask; 0 for types whose raw value is 64 or more.
std::uint64_t eventMaskBit(EventType type);

/// Makes the keyboard event tap, unless there is one, and stores it in `engine.tap`. Lets the
/// system ask the user for the permission when it is missing. Whether it worked shows in
/// `engine.tap`; the caller refreshes the window in every case.
void connectKeyboardListener();

/// What the tap asks about every key event: hands the user's own to the engine.
TapVerdict keyboardTapCallback(const TapEvent& event);

/// Claims the keys that belong to the program as things stand: those held, and the shortcuts of the
/// enabled macros; while this program is the active one the shortcuts need only be free, and while
/// the user is not at this session nothing is claimed. To be called when one of these changed, but
/// not from within `keyboardTapCallback`. When a key is another program's the tap is given up and
/// both macros stop: without its shortcuts the listener is not there. The permission watch makes it
/// anew.
void updateClaimedKeys();

}  // namespace vorrin
