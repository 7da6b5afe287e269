#include "platform/control.h"

#import <objc/runtime.h>

#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/appearance.h"
#include "platform/macos/widgets/title_color.h"
#include "platform/macos/widgets/view_native.h"

namespace vorrin {

namespace {
// Its address names the mark. AppKit gives every control a font from the start, so its own property
// cannot tell whether one was chosen.
const char fontChosenKey = 0;
}  // namespace

void Control::setEnabled(bool enabled) const {
  nsViewAs<NSControl>(*this).enabled = enabled;
  colorTitle(nsViewAs<NSControl>(*this));
}

bool Control::isEnabled() const {
  return nsViewAs<NSControl>(*this).enabled;
}

void Control::setFont(const Font& font) const {
  NSControl* control = nsViewAs<NSControl>(*this);
  control.font = nsFont(font);
  colorTitle(control);
  objc_setAssociatedObject(control, &fontChosenKey, @YES, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
}

bool Control::hasFont() const {
  return objc_getAssociatedObject(nsView(*this), &fontChosenKey) != nil;
}

void Control::setAccessibilityLabel(const std::string& label) const {
  NSView* view = nsView(*this);
  NSString* name = nsString(label);
  // Setting the same name again is told to screen readers too.
  if (![view.accessibilityLabel isEqualToString:name]) view.accessibilityLabel = name;
}

void Control::setToolTip(const std::string& text) const {
  nsView(*this).toolTip = nsString(text);
}

}  // namespace vorrin
