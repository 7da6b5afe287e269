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

/// The keyboards there are, and the keys that are taken from them before any other program. They
/// are the slaves, which feed a master: the devices of the user's, and the one all XTEST clients
/// share.
///
/// A press of such a key starts a grab by which its keyboard is cut off from its master until
/// `endGrabs`. Grabbing slaves is what keeps the focus events, freezes and lost key-ups away that
/// grabs of the master keyboard bring for the window in front, and it works while a menu or another
/// program grabs the master. The grabs are asynchronous, so a stopped process never holds up the
/// keyboard.
class KeyGrabs {
 public:
  /// Finds the keyboards and has the server tell of all their keys.
  KeyGrabs(const Connection& connection, const KeyboardMap& map);

  /// Looks for the keyboards there are now, and takes the same keys from new ones. False when a
  /// key is refused.
  [[nodiscard]] bool rescan();
  [[nodiscard]] const std::vector<Device>& keyboards() const { return keyboards_; }

  /// Takes exactly `keys`, pressed with no modifier but the map's locks. False when another client
  /// holds one of them: then none is taken.
  [[nodiscard]] bool hold(const KeySet& keys);

  /// Whether another client holds none of `keys`.
  [[nodiscard]] bool canHold(const KeySet& keys) const;

  [[nodiscard]] bool holds(xcb_keycode_t keycode) const { return held_[keycode]; }

  /// Ends the grabs that presses started. Of requests, as all below: nothing is waited for.
  void endGrabs() const;

  /// Lets a taken key through until `restore`.
  void lift(xcb_keycode_t keycode) const;
  void restore(xcb_keycode_t keycode) const;

 private:
  void findKeyboards();
  using Requests = std::vector<xcb_input_xi_passive_grab_device_cookie_t>;
  [[nodiscard]] Requests requestGrabs(const KeySet& keys) const;
  [[nodiscard]] bool areGranted(const Requests& requests) const;
  void ungrab(const KeySet& keys) const;
  template <class Use>
  void forEach(const KeySet& keys, Use use) const;
  [[nodiscard]] std::uint16_t modifierCount() const {
    return static_cast<std::uint16_t>(modifierStates_.size());
  }

  const Connection& connection_;
  const KeyboardMap& map_;
  const std::vector<xcb_window_t> roots_;
  std::vector<Device> keyboards_;
  std::vector<std::uint32_t> modifierStates_;
  KeySet held_;
};

}  // namespace vorrin::x11
