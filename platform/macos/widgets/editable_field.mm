#include "platform/macos/widgets/editable_field.h"

#import <objc/runtime.h>

#include <string>

#include "platform/macos/widgets/key_press_native.h"

/// Draws the plane of a field with a bezel. AppKit leaves out the background of a rounded bezel and
/// fills it with a colour of its own.
@interface VorrinFieldCell : NSTextFieldCell
@end

@implementation VorrinFieldCell

- (void)drawWithFrame:(NSRect)frame inView:(NSView*)view {
  if (!self.bezeled || self.backgroundColor == nil) {
    [super drawWithFrame:frame inView:view];
    return;
  }
  constexpr CGFloat radius = 5;
  NSBezierPath* plane = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(frame, 0.5, 0.5)
                                                        xRadius:radius
                                                        yRadius:radius];
  [self.backgroundColor setFill];
  [plane fill];
  [[NSColor colorWithWhite:1 alpha:0.13] setStroke];
  [plane stroke];
  [self drawInteriorWithFrame:frame inView:view];
}

- (BOOL)isOpaque {
  return NO;  // what is behind shows in the corners
}

@end

@implementation VorrinEditableField

+ (Class)cellClass {
  return VorrinFieldCell.class;
}

- (BOOL)performKeyEquivalent:(NSEvent*)event {
  // All views of the window are asked, the one being edited or not.
  NSText* editor = self.currentEditor;
  if (editor == nil) return [super performKeyEquivalent:event];
  const std::string command(vorrin::editingCommand(vorrin::keyPressOf(event)));
  return (!command.empty() && [editor tryToPerform:sel_registerName(command.c_str()) with:self]) ||
         [super performKeyEquivalent:event];
}

@end
