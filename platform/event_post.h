#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/event_tap.h"

namespace vorrin {

/// A point in global display coordinates. Systems that always click where the pointer is leave both
/// numbers at 0 and ignore them.
struct PointerLocation {
  double x = 0;
  double y = 0;
};

/// An event to be injected below every tap, as a device of the user's would send it.
struct SyntheticEvent {
  EventType type = EventType::keyDown;
  PointerLocation location;   ///< of mouse events
  std::uint16_t keyCode = 0;  ///< of key events: macOS virtual key code
  std::int64_t userData = 0;  ///< what a tap reads back in `TapEvent::userData`
};

/// Where the pointer is now; nothing when the system cannot tell.
std::optional<PointerLocation> pointerLocation();

/// Injects the events in their order and hands them to the system as one batch, so that no fault
/// between two of them leaves a key or button down. An event the system fails to make is left out;
/// the others are still posted. Nothing is reported, and nothing need happen before the first tap
/// was made. Does not allocate.
void postEvents(std::span<const SyntheticEvent> events);

}  // namespace vorrin
