#include "platform/macos/widgets/action_target.h"

#import <objc/runtime.h>

#include "platform/button.h"
#include "platform/macos/widgets/view_native.h"

@implementation VorrinActionTarget {
  vorrin::Action _action;
}

- (instancetype)initWithAction:(const vorrin::Action&)action {
  self = [super init];
  if (self != nil) _action = action;
  return self;
}

- (const vorrin::Action&)action {
  return _action;
}

- (void)perform:(id)sender {
  // A copy, since the operation may take the control away.
  const auto operation = _action.perform;
  if (!operation) return;
  std::optional<vorrin::Button> button;
  if ([sender isKindOfClass:NSView.class]) button = vorrin::Button::from(vorrin::viewOf(sender));
  operation(button.value_or(vorrin::Button()));
}

@end

namespace vorrin {

namespace {
// Its address names the association; controls themselves do not keep their targets alive.
const char targetKey = 0;
}  // namespace

void connectAction(NSControl* control, const Action& action) {
  VorrinActionTarget* target = [[VorrinActionTarget alloc] initWithAction:action];
  control.target = target;
  control.action = @selector(perform:);
  objc_setAssociatedObject(control, &targetKey, target, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
}

const Action* connectedAction(NSControl* control) {
  VorrinActionTarget* target = objc_getAssociatedObject(control, &targetKey);
  return target == nil ? nullptr : &target.action;
}

}  // namespace vorrin
