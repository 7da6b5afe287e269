#include "platform/macos/time/activity.h"

#import <Foundation/Foundation.h>

namespace vorrin {

namespace {

struct BegunActivity {
  explicit BegunActivity(NSActivityOptions options)
      : token([NSProcessInfo.processInfo beginActivityWithOptions:options
                                                           reason:@"Macros and their shortcuts"]) {}
  ~BegunActivity() { [NSProcessInfo.processInfo endActivity:token]; }
  BegunActivity(const BegunActivity&) = delete;
  BegunActivity& operator=(const BegunActivity&) = delete;

  id<NSObject> token;
};

}  // namespace

std::shared_ptr<void> beginActivity(Activity activity) {
  NSActivityOptions options = NSActivityUserInitiatedAllowingIdleSystemSleep;
  if (activity == Activity::repeating) options |= NSActivityLatencyCritical;
  return std::make_shared<BegunActivity>(options);
}

}  // namespace vorrin
