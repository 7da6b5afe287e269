#include "platform/linux/session/session_presence.h"

#include <utility>

namespace vorrin {

namespace {

void put(std::set<std::string>& names, const std::string& name, bool isIn) {
  if (isIn) {
    names.insert(name);
  } else {
    names.erase(name);
  }
}

}  // namespace

SessionPresence::SessionPresence(Changes changes) : changes_(std::move(changes)) {}

void SessionPresence::setOnScreen(bool isOnScreen) {
  isOnScreen_ = isOnScreen;
  update();
}

void SessionPresence::setLocked(const std::string& source, bool isLocked) {
  put(lockedBy_, source, isLocked);
  update();
}

void SessionPresence::setScreenSaver(const std::string& name, bool isShown) {
  put(screenSavers_, name, isShown);
  update();
}

void SessionPresence::userWasSeen() {
  isOnScreen_ = true;
  // A bus that has ended takes back nothing that it told of.
  screenSavers_.clear();
  update();
}

void SessionPresence::update() {
  const bool isLeft = !isOnScreen_ || !lockedBy_.empty();
  const bool isActive = !isLeft && screenSavers_.empty();
  const bool resigned = !std::exchange(isLeft_, isLeft) && isLeft;
  const bool activityChanged = std::exchange(isActive_, isActive) != isActive;
  if (resigned) changes_.resigned();
  if (activityChanged) changes_.activity();
}

}  // namespace vorrin
