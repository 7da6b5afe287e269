#include "platform/application_activity.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/fatal_error.h"
#include "platform/macos/foundation/notification_observer.h"

namespace vorrin {

bool applicationIsActive() {
  if (NSApp == nil) fatalError("the application object is missing");
  return NSApp.active;
}

void observeApplicationActivity(std::function<void()> changed) {
  static std::shared_ptr<void> becameActive;
  static std::shared_ptr<void> resignedActive;
  becameActive.reset();
  resignedActive.reset();
  if (!changed) return;
  NSNotificationCenter* center = NSNotificationCenter.defaultCenter;
  becameActive = observe(center, NSApplicationDidBecomeActiveNotification, changed);
  resignedActive = observe(center, NSApplicationDidResignActiveNotification, std::move(changed));
}

}  // namespace vorrin
