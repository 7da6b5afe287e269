#pragma once

#include <array>
#include <cstdint>
#include <functional>

namespace vorrin {

/// Tags every event that this program posts, so that its own tap lets them pass: "VRRN".
extern const std::int64_t marker;

/// Virtual key codes of the digit keys 0 to 9 above the letters.
extern const std::array<std::uint16_t, 10> digits;

/// Whether a macro may start now: the settings shown are valid, the tap is there, the process is
/// trusted and the user is at this session, asked in this order.
bool macrosPermitted(bool settingsValid);

/// Performs one action of a macro: 0 presses and releases the digit key of `engine.digit`, any
/// other clicks the left mouse button where the pointer is. Does nothing while this program is the
/// active one or the user is not at this session. When the process is no longer trusted it stops
/// both macros and calls `refresh`, which may be empty. Does not allocate unless that happens.
void emitMacro(int macro, const std::function<void()>& refresh);

}  // namespace vorrin
