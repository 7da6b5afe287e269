#include "platform/macos/widgets/label.h"

#include <string>

#include "platform/macos/foundation/ns_string.h"
#include "platform/text.h"

namespace {

/// Whether `text` needs no more lines of this width; 0 stands for any number.
bool fits(NSAttributedString* text, CGFloat width, NSInteger lines) {
  NSTextStorage* storage = [[NSTextStorage alloc] initWithAttributedString:text];
  NSTextContainer* container =
      [[NSTextContainer alloc] initWithSize:NSMakeSize(width, CGFLOAT_MAX)];
  container.lineFragmentPadding = 2;  // as in a cell
  container.maximumNumberOfLines = static_cast<NSUInteger>(lines);
  NSLayoutManager* layout = [[NSLayoutManager alloc] init];
  [layout addTextContainer:container];
  [storage addLayoutManager:layout];
  return NSMaxRange([layout glyphRangeForTextContainer:container]) == layout.numberOfGlyphs;
}

}  // namespace

@interface VorrinLabelCell : NSTextFieldCell
@end

@implementation VorrinLabelCell

- (NSString*)textFittedToWidth:(CGFloat)width lines:(NSInteger)lines {
  NSAttributedString* whole = self.attributedStringValue;
  if (whole.length == 0 || lines == 0) return whole.string;
  NSDictionary* attributes = [whole attributesAtIndex:0 effectiveRange:nil];
  const auto doesFit = [&](const std::string& text) {
    return fits([[NSAttributedString alloc] initWithString:vorrin::nsString(text)
                                                attributes:attributes],
                width, lines);
  };
  return vorrin::nsString(vorrin::shortenedInMiddle(vorrin::standardString(whole.string), doesFit));
}

- (void)drawInteriorWithFrame:(NSRect)frame inView:(NSView*)view {
  const NSInteger lines = static_cast<NSTextField*>(view).maximumNumberOfLines;
  NSString* fitted = [self textFittedToWidth:NSWidth(frame) lines:lines];
  if ([fitted isEqualToString:self.stringValue]) {
    [super drawInteriorWithFrame:frame inView:view];
    return;
  }
  VorrinLabelCell* shown = [self copy];
  shown.controlView = nil;  // which would be drawn again
  shown.stringValue = fitted;
  [shown drawInteriorWithFrame:frame inView:view];
}

@end

@implementation VorrinLabel

+ (Class)cellClass {
  return VorrinLabelCell.class;
}

@end
