#pragma once

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/linux/input/x11/connection.h"

namespace vorrin::x11 {

/// The macOS virtual key code of the position of Escape.
inline constexpr std::uint16_t escapeKey = 53;

/// One bit a key code of the server's.
using KeySet = std::bitset<256>;

/// Every modifier state in which none but `locks` are on: the states in which a shortcut counts as
/// pressed alone.
std::vector<std::uint32_t> lockStates(unsigned locks);

/// What the core keyboard's map says of the keys that Vorrin tells apart. They are found by their
/// XKB names, which are positions and so stay where they are under every layout; key codes differ
/// between servers. Escape is also every key whose symbol it is.
class KeyboardMap {
 public:
  /// Reads the map and its state, and has the server tell of their changes.
  explicit KeyboardMap(const Connection& connection);

  /// Whether there is one. Nothing else may be asked without.
  [[nodiscard]] bool isThere() const { return map_ != nullptr; }

  /// Takes up an event of XKB's. False when the map has to be read anew.
  [[nodiscard]] bool follow(const xcb_generic_event_t& event);

  /// Reads the map anew. What cannot be read stays as it was.
  void read();

  /// The server's code of a macOS virtual key code; 0 when the keyboard has no such key.
  [[nodiscard]] xcb_keycode_t keycode(std::uint16_t virtualKey) const;

  /// Whether a press of the key is one of Escape at this moment.
  [[nodiscard]] bool isEscape(xcb_keycode_t keycode) const;

  /// The modifiers that are on, as the server counts them.
  [[nodiscard]] unsigned modifiers() const;
  /// Those of them that are Caps Lock, Num Lock and Scroll Lock.
  [[nodiscard]] unsigned locks() const { return locks_; }

 private:
  void selectEvents() const;
  void findKeys();
  void findEscapes();
  void findLocks();

  struct Unreference {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap* map) const { xkb_keymap_unref(map); }
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
  };
  template <class Object>
  using Reference = std::unique_ptr<Object, Unreference>;

  const Connection& connection_;
  Reference<xkb_context> context_;
  Reference<xkb_keymap> map_;
  Reference<xkb_state> state_;
  std::array<xcb_keycode_t, 128> keycodes_{};  // by virtual key code
  KeySet escapes_;                             ///< under some layout or modifier
  unsigned locks_ = XCB_MOD_MASK_LOCK;
};

}  // namespace vorrin::x11
