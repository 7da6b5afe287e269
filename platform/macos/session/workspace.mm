#include "platform/workspace.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/fatal_error.h"
#include "platform/macos/session/notification_observer.h"

namespace vorrin {

namespace {

bool isSessionActive = true;

/// Has `notification` called once `isSessionActive` holds what it tells.
std::function<void()> remembering(bool isActive, std::function<void()> notification) {
  return [isActive, notification = std::move(notification)] {
    isSessionActive = isActive;
    if (notification) notification();
  };
}

}  // namespace

std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications) {
  struct Observers {
    std::shared_ptr<void> sleep;
    std::shared_ptr<void> departure;
    std::shared_ptr<void> arrival;
  };
  // The workspace has a centre of its own; these are not posted to the default one.
  NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
  return std::make_shared<Observers>(Observers{
      observe(center, NSWorkspaceWillSleepNotification, std::move(notifications.willSleep)),
      observe(center, NSWorkspaceSessionDidResignActiveNotification,
              remembering(false, std::move(notifications.sessionDidResignActive))),
      observe(center, NSWorkspaceSessionDidBecomeActiveNotification,
              remembering(true, std::move(notifications.sessionDidBecomeActive)))});
}

bool sessionIsActive() {
  return isSessionActive;
}

void openAccessibilitySettings() {
  NSURL* pane = [NSURL URLWithString:@"x-apple.systempreferences:com.apple.preference.security"
                                     @"?Privacy_Accessibility"];
  if (pane == nil) fatalError("the link to the Accessibility settings is no URL");
  [NSWorkspace.sharedWorkspace openURL:pane];
}

}  // namespace vorrin
