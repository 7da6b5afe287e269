#pragma once

#include <X11/Xlib.h>

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/linux/input/x11/modifiers.h"

namespace vorrin::x11 {

/// What the server's keymap says of the keys Vorrin tells apart. Keys are found by their XKB names,
/// which are positions and so stay where they are under every layout; key codes differ between
/// servers.
class KeyboardMap {
 public:
  /// Reads the map of the core keyboard. What cannot be read keeps its former value.
  void read(Display* display);

  /// The macOS virtual key code of a key; nothing for keys that Vorrin does not know.
  [[nodiscard]] std::optional<std::uint16_t> virtualKey(unsigned keycode) const;

  /// The server's code of a key; 0 when the keyboard has no such key.
  [[nodiscard]] KeyCode keycode(std::uint16_t virtualKey) const;

  [[nodiscard]] const ModifierMasks& modifiers() const { return modifiers_; }

 private:
  void readNames(Display* display);
  void readModifiers(Display* display);

  std::array<std::optional<std::uint16_t>, 256> virtualKeys_;
  ModifierMasks modifiers_;
};

}  // namespace vorrin::x11
