#pragma once

#include <xcb/xcb.h>

#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

namespace vorrin {

/// Learns from the X server of lock screens that tell nobody. They cover every screen by windows
/// that no window manager knows, and keep the keyboard from all other programs. The server tells of
/// windows as they come and go, and is asked for the rest when one of that kind comes: at once, and
/// some more times within three seconds, for a locker may take the keyboard a little later.
class LockScreenWatch {
 public:
  /// Called from the main loop, also when nothing has changed.
  struct Findings {
    std::function<void(bool is)> covered;  ///< the screens are, and it is open whether by a locker
    std::function<void(bool is)> locked;
  };

  /// Connects to the server that DISPLAY names; without one nothing is ever found. By a connection
  /// of its own: who hears of the root's children also gets what is said to the window manager, and
  /// the toolkit takes a wish to activate its window for the window's being active.
  explicit LockScreenWatch(Findings findings);

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  static constexpr std::chrono::milliseconds firstPause{20};

  void connect();
  void followEvents();
  [[nodiscard]] bool takeEvents();
  [[nodiscard]] bool isReasonToLook(const xcb_generic_event_t& event);
  void look();
  [[nodiscard]] bool isKeyboardHeld() const;

  Findings findings_;
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::unique_ptr<QSocketNotifier> notifier_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_window_t unmapped_ = XCB_WINDOW_NONE;
  QTimer lookAgain_;
  std::chrono::milliseconds pause_ = firstPause;  ///< up to the next look, doubled with each
  bool isLocked_ = false;
};

}  // namespace vorrin
