#include "platform/macos/widgets/title_color.h"

namespace vorrin {

namespace {

constexpr CGFloat disabledAlpha = 0.45;

NSColor* titleColor(NSColor* tint, bool enabled) {
  return enabled ? tint : [tint colorWithAlphaComponent:tint.alphaComponent * disabledAlpha];
}

}  // namespace

void colorTitle(NSControl* control) {
  if (![control isKindOfClass:NSButton.class]) return;
  auto* button = static_cast<NSButton*>(control);
  if (button.contentTintColor == nil || button.bezelStyle != NSBezelStyleRounded) return;
  // The cell of a pop-up does it while it draws.
  if ([button isKindOfClass:NSPopUpButton.class]) return;
  NSMutableParagraphStyle* centered = [[NSMutableParagraphStyle alloc] init];
  centered.alignment = NSTextAlignmentCenter;
  button.attributedTitle = [[NSAttributedString alloc]
      initWithString:button.title
          attributes:@{
            NSFontAttributeName : button.font,
            NSForegroundColorAttributeName : titleColor(button.contentTintColor, button.enabled),
            NSParagraphStyleAttributeName : centered
          }];
}

}  // namespace vorrin

@interface VorrinPopUpButtonCell : NSPopUpButtonCell
@end

@implementation VorrinPopUpButtonCell

- (NSRect)drawTitle:(NSAttributedString*)title withFrame:(NSRect)frame inView:(NSView*)view {
  auto* button = static_cast<NSPopUpButton*>(view);
  NSMutableAttributedString* drawn = [title mutableCopy];
  if (button.contentTintColor != nil) {
    [drawn addAttribute:NSForegroundColorAttributeName
                  value:vorrin::titleColor(button.contentTintColor, button.enabled)
                  range:NSMakeRange(0, drawn.length)];
  }
  return [super drawTitle:drawn withFrame:frame inView:view];
}

@end

@implementation VorrinPopUpButton

+ (Class)cellClass {
  return VorrinPopUpButtonCell.class;
}

@end
