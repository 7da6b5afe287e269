#include "platform/linux/session/session_presence.h"

#include <utility>

namespace vorrin {

namespace {

constexpr auto displayServer = "display server";

}  // namespace

SessionPresence::SessionPresence(std::function<void(bool isActive)> changed)
    : changed_(std::move(changed)) {}

void SessionPresence::setOnScreen(bool isOnScreen) {
  isOnScreen_ = isOnScreen;
  update();
}

void SessionPresence::setLocked(const std::string& source, bool isLocked) {
  if (isLocked) {
    lockedBy_.insert(source);
  } else if (lockedBy_.erase(source) != 0) {
    isLockRequested_ = false;
  }
  update();
}

void SessionPresence::lockWasRequested(Time now) {
  isLockRequested_ = true;
  lockRequest_ = now;
  wasHeldSinceRequest_ = false;
  update();
}

void SessionPresence::unlockWasRequested() {
  isLockRequested_ = false;
  update();
}

void SessionPresence::sawDisplay(const LockSigns& signs, Time now) {
  wasHeldSinceRequest_ = wasHeldSinceRequest_ || signs.keyboardIsHeld;
  const bool isRequestOver =
      !signs.keyboardIsHeld && (wasHeldSinceRequest_ || now - lockRequest_ >= lockerPatience);
  if (isRequestOver) isLockRequested_ = false;
  setLocked(displayServer, signs.keyboardIsHeld && signs.screensAreCovered);
}

void SessionPresence::userWasSeen() {
  isOnScreen_ = true;
  isLockRequested_ = false;
  update();
}

void SessionPresence::update() {
  const bool isActive = isOnScreen_ && !isLockRequested_ && lockedBy_.empty();
  if (std::exchange(isActive_, isActive) != isActive) changed_(isActive);
}

}  // namespace vorrin
