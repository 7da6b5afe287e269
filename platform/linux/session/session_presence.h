#pragma once

#include <functional>
#include <set>
#include <string>

namespace vorrin {

/// Whether the user is at this session: it is on the screen, not locked, and no screen saver hides
/// it. Put together from what several services tell, none of which knows everything.
class SessionPresence {
 public:
  struct Changes {
    std::function<void()> resigned;  ///< the session was locked or switched away
    std::function<void()> activity;  ///< `isActive` has another answer now
  };

  explicit SessionPresence(Changes changes);

  [[nodiscard]] bool isActive() const { return isActive_; }

  /// The session is shown on its screen, or another one in its place.
  void setOnScreen(bool isOnScreen);

  /// `source`, somebody who knows, says that the screen is locked or not any more.
  void setLocked(const std::string& source, bool isLocked);

  /// The screen saver of this name came or went. It need not lock.
  void setScreenSaver(const std::string& name, bool isShown);

  /// The user was seen in front of this program's window.
  void userWasSeen();

 private:
  void update();

  Changes changes_;
  bool isOnScreen_ = true;
  std::set<std::string> lockedBy_;
  std::set<std::string> screenSavers_;
  bool isLeft_ = false;
  bool isActive_ = true;
};

}  // namespace vorrin
