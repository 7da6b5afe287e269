#include "platform/linux/widgets/accessible_window.h"

#include <QAccessibleWidget>

#include "platform/linux/widgets/window_widget.h"

namespace vorrin {

namespace {

QAccessibleInterface* accessibleWindow(const QString& /*className*/, QObject* object) {
  auto* const window = dynamic_cast<WindowWidget*>(object);
  return window != nullptr ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

}  // namespace

void installAccessibleWindows() {
  QAccessible::installFactory(accessibleWindow);
}

}  // namespace vorrin
