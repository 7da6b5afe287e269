#pragma once

#import <AppKit/AppKit.h>

namespace vorrin {

/// Gives the title of a button with a bezel the content tint that was chosen for the button, which
/// AppKit itself gives to buttons without a bezel alone; dimmer while it is disabled. To be called
/// after every change of title, font, tint or enabled state. Other controls are left alone.
void colorTitle(NSControl* control);

}  // namespace vorrin

/// A pop-up in the same colours. The items of its menu keep the system's.
@interface VorrinPopUpButton : NSPopUpButton
@end
