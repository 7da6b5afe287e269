#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

#include "platform/linux/input/x11/connection.h"

namespace vorrin::x11 {

/// Makes events through XTEST. They are queued until the connection is flushed; nothing is waited
/// for.
///
/// Key events of all XTEST clients come from one device, so nothing in an event names its maker.
/// But the server makes the event while it serves the request, and so reports it to this connection
/// under the sequence number of that request. Another client's event can carry the same number only
/// if it was made later, when ours has been recognised.
class Poster {
 public:
  explicit Poster(const Connection& connection) : connection_(connection) {}

  void key(xcb_keycode_t keycode, bool down);
  void leftButton(bool down);

  /// Whether a key event just read was made by `key`; each is recognised once. Events must be given
  /// in the order they were read.
  [[nodiscard]] bool isOwn(std::uint32_t sequence, xcb_keycode_t keycode, bool down);

 private:
  struct Posted {
    std::uint32_t sequence = 0;
    xcb_keycode_t keycode = 0;
    bool down = false;
    bool operator==(const Posted&) const = default;
  };
  /// Returns the request's sequence number.
  std::uint32_t post(std::uint8_t type, std::uint8_t detail);

  const Connection& connection_;
  std::vector<Posted> posted_;  ///< whose events were not read yet
};

}  // namespace vorrin::x11
