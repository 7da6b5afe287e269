#include "platform/macos/widgets/running_instance.h"

#include <utility>

#include "platform/macos/foundation/notification_observer.h"

namespace vorrin {

namespace {

// Between two processes of this program. An Apple event would do too, but those between processes
// ask the user for a permission.
NSNotificationName const reopenRequest = @"org.vorrin.Vorrin.reopen";

}  // namespace

NSRunningApplication* otherInstance(NSString* bundleIdentifier) {
  for (NSRunningApplication* running in
       [NSRunningApplication runningApplicationsWithBundleIdentifier:bundleIdentifier]) {
    if (running.finishedLaunching && ![running isEqual:NSRunningApplication.currentApplication]) {
      return running;
    }
  }
  return nil;
}

bool reopenRunningInstance() {
  NSString* identifier = NSBundle.mainBundle.bundleIdentifier;
  NSRunningApplication* instance = identifier == nil ? nil : otherInstance(identifier);
  if (instance == nil) return false;
  [NSDistributedNotificationCenter.defaultCenter postNotificationName:reopenRequest
                                                               object:nil
                                                             userInfo:nil
                                                   deliverImmediately:YES];
  [instance activateWithOptions:NSApplicationActivateAllWindows];
  return true;
}

std::shared_ptr<void> observeReopening(std::function<void()> asked) {
  return observeDistributed(reopenRequest, std::move(asked));
}

}  // namespace vorrin
