#pragma once

#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <cstdint>
#include <vector>

#include "platform/linux/input/x11/connection.h"
#include "platform/linux/input/x11/keyboard_map.h"

namespace vorrin::x11 {

/// The number of a device at the server.
using Device = xcb_input_device_id_t;

/// A keyboard that feeds a master keyboard: a device of the user's, or the one all XTEST clients
/// share.
struct SlaveKeyboard {
  Device device = 0;
  bool isXtest = false;
};

/// The keyboards there are, and the keys that are taken from them before any other program.
///
/// A press of such a key starts a grab by which its keyboard is cut off from its master until
/// `end`. Grabbing slaves is what keeps the focus events, freezes and lost key-ups away that grabs
/// of the master keyboard bring for the window in front, and it works while a menu or another
/// program grabs the master. The grabs are asynchronous, so a stopped process never holds up the
/// keyboard.
class KeyGrabs {
 public:
  /// Finds the keyboards and has the server tell of all their keys.
  explicit KeyGrabs(const Connection& connection);

  /// Looks for the keyboards there are now, and takes the same keys from new ones. False when a
  /// key is refused.
  [[nodiscard]] bool rescan();
  [[nodiscard]] const std::vector<SlaveKeyboard>& keyboards() const { return keyboards_; }
  [[nodiscard]] bool isThere(Device device) const;

  /// Under which modifier states a key is taken. What is taken is let go when they change.
  void setModifierStates(const std::vector<std::uint32_t>& states);

  /// Takes exactly `keys`. False when another client holds one of them: then none is taken.
  [[nodiscard]] bool hold(const KeySet& keys);

  /// Whether another client holds none of `keys`.
  [[nodiscard]] bool canHold(const KeySet& keys) const;

  [[nodiscard]] bool holds(xcb_keycode_t keycode) const { return held_[keycode]; }

  /// Ends the grab that a press started. Of requests, as all below: nothing is waited for.
  void end(Device device) const;
  /// Ends such grabs of the keyboards that XTEST clients share.
  void endOfXtest() const;

  /// Lets a taken key through when it comes from XTEST, until `restore`.
  void lift(xcb_keycode_t keycode) const;
  void restore(xcb_keycode_t keycode) const;

 private:
  void findKeyboards();
  [[nodiscard]] bool grab(const KeySet& keys) const;
  void ungrab(const KeySet& keys) const;
  template <class Use>
  void forEachXtest(Use use) const;

  const Connection& connection_;
  const std::vector<xcb_window_t> roots_;
  std::vector<SlaveKeyboard> keyboards_;
  std::vector<std::uint32_t> modifierStates_;
  KeySet held_;
};

}  // namespace vorrin::x11
