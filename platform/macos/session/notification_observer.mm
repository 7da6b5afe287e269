#include "platform/macos/session/notification_observer.h"

#include <utility>

namespace vorrin {

namespace {

struct Observer {
  Observer(NSNotificationCenter* notificationCenter, NSNotificationName name,
           std::function<void()> told)
      : center(notificationCenter) {
    const auto call = std::make_shared<const std::function<void()>>(std::move(told));
    // The call may end the observation, and with it the block.
    const auto run = ^(NSNotification*) {
      const std::function<void()> kept = *call;
      if (kept) kept();
    };
    token = [center addObserverForName:name object:nil queue:nil usingBlock:run];
  }
  ~Observer() { [center removeObserver:token]; }
  Observer(const Observer&) = delete;
  Observer& operator=(const Observer&) = delete;

  NSNotificationCenter* center;
  id<NSObject> token;
};

}  // namespace

std::shared_ptr<void> observe(NSNotificationCenter* center, NSNotificationName name,
                              std::function<void()> told) {
  return std::make_shared<Observer>(center, name, std::move(told));
}

}  // namespace vorrin
