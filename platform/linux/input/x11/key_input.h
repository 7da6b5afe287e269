#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

#include <cstdint>

#include "platform/event_tap.h"

namespace vorrin::x11 {

/// A press or release of a key as the server tells of it.
struct KeyInput {
  int device = 0;  ///< the keyboard, or the master that it feeds
  int source = 0;  ///< the keyboard
  unsigned keycode = 0;
  bool down = false;
  bool repeat = false;       ///< made by the server while the key is held down
  unsigned long serial = 0;  ///< of the last request of ours that the server had served by then
  std::uint32_t time = 0;    ///< of the server's clock, in milliseconds
};

/// From an event of every key. The server makes none of these for repeats.
KeyInput keyInput(const XIRawEvent& event);

/// From an event of a key held back from other programs.
KeyInput keyInput(const XIDeviceEvent& event);

/// Whether a raw event is the keyboard's own and not the copy that its master makes of it.
bool isOfSlave(const KeyInput& input);

/// The event as a tap shows it.
TapEvent tapEvent(const KeyInput& input, std::uint16_t virtualKey, std::uint64_t flags,
                  std::int64_t userData);

}  // namespace vorrin::x11
