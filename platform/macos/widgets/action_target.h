#pragma once

#import <AppKit/AppKit.h>

#include "platform/control.h"

/// What a native control sends its action to: runs the operation of an `Action`.
@interface VorrinActionTarget : NSObject
@property(nonatomic, readonly) const vorrin::Action& action;
- (instancetype)initWithAction:(const vorrin::Action&)action;
- (void)perform:(id)sender;
@end

namespace vorrin {

/// Has `control` perform `action`, and keeps the target alive with the control.
void connectAction(NSControl* control, const Action& action);

/// What was connected; null for a control that never was.
const Action* connectedAction(NSControl* control);

}  // namespace vorrin
