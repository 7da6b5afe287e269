#include "platform/control.h"

#include "platform/linux/widgets/native_text.h"
#include "platform/linux/widgets/native_view.h"
#include "platform/linux/widgets/palette.h"

namespace vorrin {

void Control::setEnabled(bool enabled) const {
  widgetOf(*this).setEnabled(enabled);
}

bool Control::isEnabled() const {
  return widgetOf(*this).isEnabled();
}

void Control::setFont(const Font& font) const {
  widgetOf(*this).setFont(nativeFont(font));
  widgetOf<NativeView>(*this).hasFont = true;
}

bool Control::hasFont() const {
  return widgetOf<NativeView>(*this).hasFont;
}

void Control::setAccessibilityLabel(const std::string& label) const {
  widgetOf(*this).setAccessibleName(nativeText(label));
}

}  // namespace vorrin
