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

/// Tells the tap which keys it may have to swallow as things stand: those held, and the shortcuts
/// of the enabled macros unless this program is the active one; none while the user is not at this
/// session. Asks the system only when that
/// changed. When the system refuses a key the tap is given up, to be made anew by the permission
/// watch.
void updateSwallowableKeys();

}  // namespace vorrin
