#include "platform/workspace.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/fatal_error.h"
#include "platform/macos/session/notification_observer.h"

namespace vorrin {

std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications) {
  struct Observers {
    std::shared_ptr<void> sleep;
    std::shared_ptr<void> session;
  };
  // The workspace has a centre of its own; these are not posted to the default one.
  NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
  return std::make_shared<Observers>(Observers{
      observe(center, NSWorkspaceWillSleepNotification, std::move(notifications.willSleep)),
      observe(center, NSWorkspaceSessionDidResignActiveNotification,
              std::move(notifications.sessionDidResignActive))});
}

void openAccessibilitySettings() {
  NSURL* pane = [NSURL URLWithString:@"x-apple.systempreferences:com.apple.preference.security"
                                     @"?Privacy_Accessibility"];
  if (pane == nil) fatalError("the link to the Accessibility settings is no URL");
  [NSWorkspace.sharedWorkspace openURL:pane];
}

}  // namespace vorrin
