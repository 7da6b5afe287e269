#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <chrono>
#include <functional>

namespace vorrin {

/// Learns from the X server of lock screens that tell nobody. They cover every screen by windows
/// that no window manager knows, and keep the keyboard from all other programs. The server tells of
/// windows as they come and go, and is asked for the rest when one of that kind comes: at once, and
/// some more times within three seconds, for a locker may take the keyboard a little later.
class LockScreenWatch : private QAbstractNativeEventFilter {
 public:
  /// Called from the main loop, also when nothing has changed.
  struct Findings {
    std::function<void(bool is)> covered;  ///< the screens are, and it is open whether by a locker
    std::function<void(bool is)> locked;
  };

  /// Looks once as soon as the main loop runs: Vorrin may be started behind a lock screen.
  /// `connection` is the toolkit's.
  LockScreenWatch(xcb_connection_t* connection, Findings findings);

 private:
  static constexpr std::chrono::milliseconds firstPause{20};

  // The signature and its type are the widget library's.
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
  [[nodiscard]] bool isReasonToLook(const xcb_generic_event_t& event) const;
  void look();
  [[nodiscard]] bool isKeyboardHeld() const;

  xcb_connection_t* const connection_;
  const Findings findings_;
  const xcb_window_t root_;
  const xcb_window_t unmapped_;
  QTimer lookAgain_;
  std::chrono::milliseconds pause_ = firstPause;  ///< up to the next look, doubled with each
  bool isLocked_ = false;
};

}  // namespace vorrin
