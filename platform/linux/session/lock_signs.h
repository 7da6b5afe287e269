#pragma once

#include <xcb/xcb.h>

#include <memory>

#include "platform/linux/session/session_presence.h"

namespace vorrin {

/// Looks on the X server for a program that locks the screen, which need not tell anybody. It has
/// to keep the keys from all others, and nearly all of them cover the screens by windows that no
/// window manager has a say in.
class LockSignsOnX11 {
 public:
  /// Connects to the server that DISPLAY names. Without one there is never a sign.
  LockSignsOnX11();

  /// Asks the server. Nobody notices that.
  [[nodiscard]] LockSigns look() const;

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  [[nodiscard]] bool keyboardIsHeld() const;
  [[nodiscard]] bool screensAreCovered() const;

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_window_t unmapped_ = XCB_WINDOW_NONE;
};

}  // namespace vorrin
