#include "platform/workspace.h"

#include <utility>

#include "platform/fake/system/fake_system.h"
#include "platform/fake/system/session_state.h"

namespace vorrin {

std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications) {
  auto observer = std::make_shared<WorkspaceNotifications>(std::move(notifications));
  fake::session().observers.push_back(observer);
  return observer;
}

bool sessionIsActive() {
  return fake::session().userIsPresent;
}

void openAccessibilitySettings() {
  ++fake::system().settingsOpenings;
}

namespace fake {
namespace {

void send(std::function<void()> WorkspaceNotifications::*notification) {
  // A copy, for an observer may come or go during the call.
  const auto observers = session().observers;
  for (const auto& observer : observers) {
    const auto living = observer.lock();
    if (living && (*living).*notification) ((*living).*notification)();
  }
}

}  // namespace

void sendWillSleep() {
  send(&WorkspaceNotifications::willSleep);
}

void sendSessionDidResignActive() {
  session().userIsPresent = false;
  send(&WorkspaceNotifications::sessionDidResignActive);
  send(&WorkspaceNotifications::sessionActivityDidChange);
}

void setSessionActive(bool active) {
  session().userIsPresent = active;
  send(&WorkspaceNotifications::sessionActivityDidChange);
}

}  // namespace fake
}  // namespace vorrin
