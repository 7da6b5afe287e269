#include "platform/stack_view.h"

#include "platform/macos/widgets/appearance.h"
#include "platform/macos/widgets/view_native.h"

namespace vorrin {

StackView StackView::make(Orientation orientation, double spacing, std::span<const View> views) {
  NSMutableArray<NSView*>* nativeViews = [NSMutableArray array];
  for (const View& view : views) [nativeViews addObject:nsView(view)];
  NSStackView* stack = [NSStackView stackViewWithViews:nativeViews];
  stack.spacing = spacing;
  if (orientation == Orientation::horizontal) {
    stack.orientation = NSUserInterfaceLayoutOrientationHorizontal;
    stack.alignment = NSLayoutAttributeCenterY;
    // Spread over the row's whole width, so that a spacer takes what the others leave.
    stack.distribution = NSStackViewDistributionFill;
  } else {
    stack.orientation = NSUserInterfaceLayoutOrientationVertical;
    stack.alignment = NSLayoutAttributeLeading;
  }
  return StackView(nativeOf(stack));
}

void StackView::addArrangedSubview(const View& view) const {
  [nsViewAs<NSStackView>(*this) addArrangedSubview:nsView(view)];
}

void StackView::setEdgeInsets(double inset) const {
  nsViewAs<NSStackView>(*this).edgeInsets = NSEdgeInsetsMake(inset, inset, inset, inset);
}

void StackView::setLayer(const Color& background, double cornerRadius, double borderWidth,
                         const Color& border) const {
  NSView* view = nsView(*this);
  view.wantsLayer = YES;
  view.layer.backgroundColor = nsColor(background).CGColor;
  view.layer.cornerRadius = cornerRadius;
  view.layer.borderWidth = borderWidth;
  view.layer.borderColor = nsColor(border).CGColor;
}

}  // namespace vorrin
