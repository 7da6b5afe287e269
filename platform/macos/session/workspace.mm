#include "platform/workspace.h"

#import <AppKit/AppKit.h>

#include <array>
#include <utility>

#include "platform/fatal_error.h"
#include "platform/macos/foundation/notification_observer.h"
#include "platform/macos/session/session_presence.h"

namespace vorrin {

namespace {

bool isSessionActive = true;

// Not documented, but as old as the screen lock. Without them a locked screen would count as any
// other.
NSNotificationName const screenIsLocked = @"com.apple.screenIsLocked";
NSNotificationName const screenIsUnlocked = @"com.apple.screenIsUnlocked";
NSString* const lockedKey = @"CGSSessionScreenIsLocked";

class WorkspaceObserver {
 public:
  explicit WorkspaceObserver(WorkspaceNotifications notifications);

 private:
  void tell(bool isActive) const;

  WorkspaceNotifications notifications_;
  SessionPresence presence_;
  std::array<std::shared_ptr<void>, 6> observations_;
};

/// What the window server says of this session; nil for a process outside of one.
NSDictionary* currentSession() {
  return CFBridgingRelease(CGSessionCopyCurrentDictionary());
}

bool sessionIsOnScreen() {
  NSNumber* onConsole = currentSession()[(__bridge NSString*)kCGSessionOnConsoleKey];
  return onConsole == nil || onConsole.boolValue;
}

bool sessionIsLocked() {
  NSNumber* locked = currentSession()[lockedKey];
  return locked.boolValue;
}

WorkspaceObserver::WorkspaceObserver(WorkspaceNotifications notifications)
    : notifications_(std::move(notifications)),
      presence_([this](bool isActive) { tell(isActive); }) {
  // The workspace has a centre of its own; these are not posted to the default one.
  NSNotificationCenter* workspace = NSWorkspace.sharedWorkspace.notificationCenter;
  const auto lookAgain = [this] { presence_.setLocked(sessionIsLocked()); };
  observations_ = {observe(workspace, NSWorkspaceWillSleepNotification, notifications_.willSleep),
                   observe(workspace, NSWorkspaceSessionDidResignActiveNotification,
                           [this] { presence_.setOnScreen(false); }),
                   observe(workspace, NSWorkspaceSessionDidBecomeActiveNotification,
                           [this, lookAgain] {
                             lookAgain();
                             presence_.setOnScreen(true);
                           }),
                   observeDistributed(screenIsLocked, [this] { presence_.setLocked(true); }),
                   observeDistributed(screenIsUnlocked, [this] { presence_.setLocked(false); }),
                   // A lock whose end was not told must not last for ever.
                   observe(NSNotificationCenter.defaultCenter,
                           NSApplicationDidBecomeActiveNotification, lookAgain)};
  lookAgain();
  presence_.setOnScreen(sessionIsOnScreen());
}

void WorkspaceObserver::tell(bool isActive) const {
  isSessionActive = isActive;
  if (!isActive && notifications_.sessionDidResignActive) notifications_.sessionDidResignActive();
  if (notifications_.sessionActivityDidChange) notifications_.sessionActivityDidChange();
}

}  // namespace

std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications) {
  return std::make_shared<WorkspaceObserver>(std::move(notifications));
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
