#pragma once

#include <chrono>
#include <functional>
#include <set>
#include <string>

namespace vorrin {

/// What a display server shows of a program that locks the screen.
struct LockSigns {
  bool keyboardIsHeld = false;     ///< another program has all keys sent to itself
  bool screensAreCovered = false;  ///< by windows that no window manager has a say in
};

/// Whether the user is at this session: it is on the screen and not locked. Put together from what
/// the login manager and the screen savers tell, none of which knows everything.
class SessionPresence {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// How long a locker may take, after it was asked, to take the keyboard.
  static constexpr std::chrono::seconds lockerPatience{10};

  /// `changed` is called after every change of `isActive`, with its new value.
  explicit SessionPresence(std::function<void(bool isActive)> changed);

  [[nodiscard]] bool isActive() const { return isActive_; }

  /// The session is shown on its screen, or another one in its place.
  void setOnScreen(bool isOnScreen);

  /// `source`, somebody who knows, says that the screen is locked or not any more.
  void setLocked(const std::string& source, bool isLocked);

  /// Somebody was asked to lock the screen. Lockers that tell nothing may be at work from now on,
  /// up to any sign that the screen is not locked any more.
  void lockWasRequested(Time now);
  void unlockWasRequested();

  /// What the display server shows now. Both signs together are a lock, whoever is behind it. The
  /// keyboard alone tells what came of a request: no locker can do without it, so the lock is over
  /// when it is free again, and there is none when nobody has taken it in time.
  void sawDisplay(const LockSigns& signs, Time now);

  /// The user was seen at this session, in front of a window.
  void userWasSeen();

 private:
  void update();

  std::function<void(bool)> changed_;
  bool isOnScreen_ = true;
  bool isLockRequested_ = false;
  Time lockRequest_;
  bool wasHeldSinceRequest_ = false;
  std::set<std::string> lockedBy_;
  bool isActive_ = true;
};

}  // namespace vorrin
