#include "platform/view.h"

#include "platform/fatal_error.h"
#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/appearance.h"
#include "platform/macos/widgets/view_native.h"

namespace vorrin {

namespace {

struct WrappedView : View {
  explicit WrappedView(NSView* view) : View(nativeOf(view)) {}
};

// The seam measures from the upper left corner, AppKit from the lower left unless a view is
// flipped.
Rect fromUpperLeft(NSRect rect, NSView* root) {
  const double top = root.flipped ? NSMinY(rect) : NSMaxY(root.bounds) - NSMaxY(rect);
  return {NSMinX(rect), top, NSWidth(rect), NSHeight(rect)};
}

void fixLength(NSView* view, NSLayoutDimension* length, NSString* identifier, double points) {
  for (NSLayoutConstraint* constraint in view.constraints) {
    if ([constraint.identifier isEqualToString:identifier]) {
      constraint.constant = points;
      return;
    }
  }
  NSLayoutConstraint* constraint = [length constraintEqualToConstant:points];
  constraint.identifier = identifier;
  constraint.active = YES;
}

}  // namespace

std::shared_ptr<View::Native> nativeOf(NSView* view) {
  return std::make_shared<View::Native>(View::Native{view});
}

View viewOf(NSView* view) {
  return WrappedView(view);
}

NSView* nsView(const View& view) {
  precondition(static_cast<bool>(view), "the value refers to a view");
  return view.native()->view;
}

View View::spacer() {
  NSView* view = [[NSView alloc] initWithFrame:NSZeroRect];
  // Gives way to nothing else in its row when there is room to be taken.
  [view setContentHuggingPriority:1 forOrientation:NSLayoutConstraintOrientationHorizontal];
  return viewOf(view);
}

std::vector<View> View::subviews() const {
  std::vector<View> views;
  // What AppKit puts inside its controls (labels in buttons, since macOS 26 also in fields) is its
  // own business.
  if (isControl()) return views;
  for (NSView* view in nsView(*this).subviews) views.push_back(viewOf(view));
  return views;
}

bool View::isControl() const {
  return [nsView(*this) isKindOfClass:NSControl.class];
}

Rect View::bounds() const {
  const NSRect bounds = nsView(*this).bounds;
  return {0, 0, NSWidth(bounds), NSHeight(bounds)};
}

Rect View::boundsIn(const View& root) const {
  NSView* view = nsView(*this);
  return fromUpperLeft([view convertRect:view.bounds toView:nsView(root)], nsView(root));
}

void View::setWidth(double points) const {
  NSView* view = nsView(*this);
  fixLength(view, view.widthAnchor, @"fixed width", points);
  // For a place that goes by the frame, such as a sheet.
  [view setFrameSize:NSMakeSize(points, NSHeight(view.frame))];
}

void View::setHeight(double points) const {
  NSView* view = nsView(*this);
  fixLength(view, view.heightAnchor, @"fixed height", points);
  [view setFrameSize:NSMakeSize(NSWidth(view.frame), points)];
}

void View::setBackgroundColor(const Color& color) const {
  NSView* view = nsView(*this);
  view.wantsLayer = YES;
  view.layer.backgroundColor = nsColor(color).CGColor;
}

void View::addTopCentered(const View& child, double top, double width) const {
  NSView* outer = nsView(*this);
  NSView* inner = nsView(child);
  inner.translatesAutoresizingMaskIntoConstraints = NO;
  [outer addSubview:inner];
  [NSLayoutConstraint activateConstraints:@[
    [inner.centerXAnchor constraintEqualToAnchor:outer.centerXAnchor],
    [inner.widthAnchor constraintEqualToConstant:width],
    [inner.topAnchor constraintEqualToAnchor:outer.topAnchor constant:top]
  ]];
}

void View::layoutSubtreeIfNeeded() const {
  [nsView(*this) layoutSubtreeIfNeeded];
}

std::string View::pngSnapshot() const {
  NSView* view = nsView(*this);
  NSBitmapImageRep* picture = [view bitmapImageRepForCachingDisplayInRect:view.bounds];
  if (picture == nil) return {};
  [view cacheDisplayInRect:view.bounds toBitmapImageRep:picture];
  NSData* png = [picture representationUsingType:NSBitmapImageFileTypePNG properties:@{}];
  if (png == nil) return {};
  return {static_cast<const char*>(png.bytes), png.length};
}

std::string View::description() const {
  return standardString(nsView(*this).description);
}

bool View::operator==(const View& other) const {
  if (!native_ || !other.native_) return native_ == other.native_;
  return native_->view == other.native_->view;
}

}  // namespace vorrin
