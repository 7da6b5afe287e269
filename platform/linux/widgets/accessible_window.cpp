#include "platform/linux/widgets/accessible_window.h"

#include <QAccessibleWidget>

#include "platform/linux/widgets/sheet.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin {

namespace {

class AccessibleSheet : public QAccessibleWidget {
 public:
  explicit AccessibleSheet(Sheet& sheet) : QAccessibleWidget(&sheet, QAccessible::Dialog) {}

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.modal = 1;
    return state;
  }
};

QAccessibleInterface* accessibleWindow(const QString& /*className*/, QObject* object) {
  if (auto* const sheet = dynamic_cast<Sheet*>(object)) return new AccessibleSheet(*sheet);
  auto* const window = dynamic_cast<WindowWidget*>(object);
  return window != nullptr ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

}  // namespace

void installAccessibleWindows() {
  QAccessible::installFactory(accessibleWindow);
}

}  // namespace vorrin
