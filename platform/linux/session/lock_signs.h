#pragma once

#include <xcb/xcb.h>

#include <optional>

#include "platform/linux/input/x11/quiet_connection.h"
#include "platform/linux/session/session_presence.h"

namespace vorrin {

/// Looks on the X server for a program that locks the screen, which need not tell anybody. It has
/// to keep the keys from all others, and nearly all of them cover the screens by windows that no
/// window manager has a say in.
class LockSignsOnX11 {
 public:
  /// Connects to the server that DISPLAY names. Without one there is never a sign.
  LockSignsOnX11();

  /// Asks the server and waits for its answer. Nobody notices that.
  [[nodiscard]] LockSigns look();

  /// Asks, and leaves the answer to `answered`. What was asked before is forgotten.
  void ask();

  /// What the server answered; nothing as long as it has not. Waits only to look closer at a sign
  /// that was found. Call it after `ask`, once for each answer.
  [[nodiscard]] std::optional<LockSigns> answered();

 private:
  [[nodiscard]] LockSigns read(const xcb_grab_keyboard_reply_t* refusal) const;
  [[nodiscard]] bool screensAreCovered() const;

  x11::QuietConnection connection_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_window_t unmapped_ = XCB_WINDOW_NONE;
  std::optional<xcb_grab_keyboard_cookie_t> asked_;
};

}  // namespace vorrin
