#pragma once

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include "platform/linux/input/x11/connection.h"
#include "platform/linux/input/x11/post_ledger.h"

namespace vorrin::x11 {

/// Makes events through XTEST. They are queued until the connection is flushed; nothing is waited
/// for.
class Poster {
 public:
  explicit Poster(const Connection& connection) : connection_(connection) {}

  void key(xcb_keycode_t keycode, bool down) {
    post(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode);
  }

  /// The same for a key whose events are looked at: `isOwn` tells it from others'.
  void knownKey(xcb_keycode_t keycode, bool down) {
    ledger_.add(post(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode), keycode, down);
  }
  [[nodiscard]] bool isOwn(std::uint32_t sequence, xcb_keycode_t keycode, bool down) {
    return ledger_.take(sequence, keycode, down);
  }

  void leftButton(bool down) {
    post(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
  }

 private:
  std::uint32_t post(std::uint8_t type, std::uint8_t detail) {
    // With a time to come the server would hold up all other requests of this connection.
    constexpr std::uint32_t atOnce = XCB_CURRENT_TIME;
    return xcb_test_fake_input(connection_.get(), type, detail, atOnce, XCB_NONE, 0, 0, 0).sequence;
  }

  const Connection& connection_;
  PostLedger ledger_;
};

}  // namespace vorrin::x11
