#include "platform/macos/widgets/title_color.h"

namespace vorrin {

namespace {

constexpr CGFloat disabledAlpha = 0.45;

NSColor* titleColor(NSColor* tint, bool enabled) {
  return enabled ? tint : [tint colorWithAlphaComponent:tint.alphaComponent * disabledAlpha];
}

NSAttributedString* colored(NSAttributedString* title, NSColor* color) {
  NSMutableAttributedString* made = [title mutableCopy];
  [made addAttribute:NSForegroundColorAttributeName value:color range:NSMakeRange(0, made.length)];
  return made;
}

}  // namespace

void colorTitle(NSControl* control) {
  if (![control isKindOfClass:NSButton.class]) return;
  auto* button = static_cast<NSButton*>(control);
  if (button.contentTintColor == nil || button.bezelStyle != NSBezelStyleRounded) return;
  // The cell of a pop-up does it while it draws.
  if ([button isKindOfClass:NSPopUpButton.class]) return;
  button.title = [button.title copy];  // in the font and place of now, no more in a colour
  button.attributedTitle =
      colored(button.attributedTitle, titleColor(button.contentTintColor, button.enabled));
}

}  // namespace vorrin

@interface VorrinPopUpButtonCell : NSPopUpButtonCell
@end

@implementation VorrinPopUpButtonCell

- (NSRect)drawTitle:(NSAttributedString*)title withFrame:(NSRect)frame inView:(NSView*)view {
  auto* button = static_cast<NSPopUpButton*>(view);
  NSColor* tint = button.contentTintColor;
  NSAttributedString* drawn =
      tint == nil ? title : vorrin::colored(title, vorrin::titleColor(tint, button.enabled));
  return [super drawTitle:drawn withFrame:frame inView:view];
}

@end

@implementation VorrinPopUpButton

+ (Class)cellClass {
  return VorrinPopUpButtonCell.class;
}

@end
