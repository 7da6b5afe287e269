#include "platform/macos/foundation/notification_observer.h"

#include <utility>

/// What a notification centre sends its messages to.
@interface VorrinNotificationObserver : NSObject
- (instancetype)initWithCall:(std::function<void()>)call;
- (void)notified:(NSNotification*)notification;
@end

@implementation VorrinNotificationObserver {
  std::function<void()> _call;
}

- (instancetype)initWithCall:(std::function<void()>)call {
  self = [super init];
  if (self != nil) _call = std::move(call);
  return self;
}

- (void)notified:(NSNotification*)notification {
  // A copy, since the call may end the observation.
  const auto call = _call;
  if (call) call();
}

@end

namespace vorrin {

namespace {

/// Keeps `observer` at `center` until the last copy of the value returned goes away; the centre
/// itself does not keep it alive.
std::shared_ptr<void> observation(NSNotificationCenter* center,
                                  VorrinNotificationObserver* observer) {
  struct Observation {
    Observation(NSNotificationCenter* where, VorrinNotificationObserver* who)
        : center(where), observer(who) {}
    ~Observation() { [center removeObserver:observer]; }
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;

    NSNotificationCenter* center;
    VorrinNotificationObserver* observer;
  };
  return std::make_shared<Observation>(center, observer);
}

}  // namespace

std::shared_ptr<void> observe(NSNotificationCenter* center, NSNotificationName name,
                              std::function<void()> told) {
  auto* observer = [[VorrinNotificationObserver alloc] initWithCall:std::move(told)];
  [center addObserver:observer selector:@selector(notified:) name:name object:nil];
  return observation(center, observer);
}

std::shared_ptr<void> observeDistributed(NSNotificationName name, std::function<void()> told) {
  NSDistributedNotificationCenter* center = NSDistributedNotificationCenter.defaultCenter;
  auto* observer = [[VorrinNotificationObserver alloc] initWithCall:std::move(told)];
  [center addObserver:observer
                selector:@selector(notified:)
                    name:name
                  object:nil
      suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
  return observation(center, observer);
}

}  // namespace vorrin
