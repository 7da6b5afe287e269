#include "platform/macos/session/session_presence.h"

#include <utility>

namespace vorrin {

SessionPresence::SessionPresence(std::function<void(bool isActive)> changed)
    : changed_(std::move(changed)) {}

void SessionPresence::setOnScreen(bool isOnScreen) {
  isOnScreen_ = isOnScreen;
  update();
}

void SessionPresence::setLocked(bool isLocked) {
  isLocked_ = isLocked;
  update();
}

void SessionPresence::update() {
  const bool isActive = isOnScreen_ && !isLocked_;
  if (std::exchange(isActive_, isActive) != isActive) changed_(isActive);
}

}  // namespace vorrin
