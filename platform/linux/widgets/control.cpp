#include "platform/control.h"

#include "platform/linux/foundation/native_text.h"
#include "platform/linux/widgets/native_view.h"
#include "platform/linux/widgets/palette.h"
#include "platform/linux/widgets/pop_up_widget.h"

namespace vorrin {

void Control::setEnabled(bool enabled) const {
  widgetOf(*this).setEnabled(enabled);
}

bool Control::isEnabled() const {
  return widgetOf(*this).isEnabled();
}

void Control::setFont(const Font& font) const {
  widgetOf(*this).setFont(nativeFont(font));
}

bool Control::hasFont() const {
  return widgetOf(*this).testAttribute(Qt::WA_SetFont);
}

void Control::setAccessibilityLabel(const std::string& label) const {
  QWidget& widget = widgetOf(*this);
  const QString name = nativeText(label);
  // Setting the same name again is told to screen readers too.
  if (widget.accessibleName() == name) return;
  widget.setAccessibleName(name);
  // A pop-up's name is, to the screen readers of this system, the item it shows. What it is for is
  // said after that.
  if (dynamic_cast<PopUpWidget*>(&widget) != nullptr) widget.setAccessibleDescription(name);
}

void Control::setToolTip(const std::string& text) const {
  widgetOf(*this).setToolTip(nativeText(text));
}

}  // namespace vorrin
