#include "platform/linux/session/session_presence.h"

#include <utility>

namespace vorrin {

SessionPresence::SessionPresence(Changes changes) : changes_(std::move(changes)) {}

void SessionPresence::setOnScreen(bool isOnScreen) {
  isOnScreen_ = isOnScreen;
  update();
}

void SessionPresence::setLocked(const std::string& source, bool isLocked) {
  set(lockedBy_, source, isLocked);
}

void SessionPresence::setScreenSaver(const std::string& name, bool isShown) {
  set(screenSavers_, name, isShown);
}

void SessionPresence::lockWasRequested() {
  isLockRequested_ = true;
  update();
}

void SessionPresence::lockRequestEnded() {
  isLockRequested_ = false;
  update();
}

void SessionPresence::userWasSeen() {
  isOnScreen_ = true;
  isLockRequested_ = false;
  // A bus that has ended takes back nothing that it told of.
  screenSavers_.clear();
  update();
}

void SessionPresence::set(std::set<std::string>& those, const std::string& name, bool isOn) {
  if (isOn) {
    those.insert(name);
  } else if (those.erase(name) != 0) {
    isLockRequested_ = false;
  }
  update();
}

void SessionPresence::update() {
  const bool isLeft = !isOnScreen_ || isLockRequested_ || !lockedBy_.empty();
  const bool isActive = !isLeft && screenSavers_.empty();
  const bool resigned = !std::exchange(isLeft_, isLeft) && isLeft;
  const bool activityChanged = std::exchange(isActive_, isActive) != isActive;
  if (resigned) changes_.resigned();
  if (activityChanged) changes_.activity();
}

}  // namespace vorrin
