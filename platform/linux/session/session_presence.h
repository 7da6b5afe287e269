#pragma once

#include <functional>
#include <set>
#include <string>

namespace vorrin {

/// Whether the user is at this session: it is on the screen and not locked. Put together from what
/// the login manager and the screen savers tell, none of which knows everything.
class SessionPresence {
 public:
  /// `changed` is called after every change of `isActive`, with its new value.
  explicit SessionPresence(std::function<void(bool isActive)> changed);

  [[nodiscard]] bool isActive() const { return isActive_; }

  /// The session is shown on its screen, or another one in its place.
  void setOnScreen(bool isOnScreen);

  /// `source`, somebody who knows, says that the screen is locked or not any more.
  void setLocked(const std::string& source, bool isLocked);

  /// Somebody was asked to lock the screen. Lockers that tell nothing may be at work from now on,
  /// up to any sign that the screen is not locked any more.
  void lockWasRequested();
  void unlockWasRequested();

  /// The user was seen at this session, in front of a window.
  void userWasSeen();

 private:
  void update();

  std::function<void(bool)> changed_;
  bool isOnScreen_ = true;
  bool isLockRequested_ = false;
  std::set<std::string> lockedBy_;
  bool isActive_ = true;
};

}  // namespace vorrin
