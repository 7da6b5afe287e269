#pragma once

#include <functional>

namespace vorrin {

/// Whether the user is at this session: it is on the screen and not locked. Several services tell
/// of these two, and some of what they tell comes twice or out of order.
class SessionPresence {
 public:
  /// `changed` is called after every change of `isActive`, with its new value.
  explicit SessionPresence(std::function<void(bool isActive)> changed);

  [[nodiscard]] bool isActive() const { return isActive_; }

  /// The session is shown on the screen, or another one in its place.
  void setOnScreen(bool isOnScreen);
  /// The screen is locked, or not any more.
  void setLocked(bool isLocked);

 private:
  void update();

  std::function<void(bool)> changed_;
  bool isOnScreen_ = true;
  bool isLocked_ = false;
  bool isActive_ = true;
};

}  // namespace vorrin
