#include "platform/linux/widgets/pop_up_widget.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QWheelEvent>
#include <algorithm>

namespace vorrin {

namespace {

constexpr int shownItems = 16;
constexpr int roomBesideTitle = 38;
constexpr int controlHeight = 24;
constexpr int smallestWidth = 64;
constexpr int widestMenu = 500;

}  // namespace

PopUpWidget::PopUpWidget(Action popUpAction)
    : NativeButton(ButtonKind::popUp, std::move(popUpAction)) {
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  setMaxVisibleItems(shownItems);
  connect(this, &QComboBox::activated, this, [this] { perform(*this); });
}

QSize PopUpWidget::sizeHint() const {
  ensurePolished();
  return {std::max(smallestWidth, widestTitle() + roomBesideTitle), controlHeight};
}

QSize PopUpWidget::minimumSizeHint() const { return {smallestWidth, controlHeight}; }

void PopUpWidget::showPopup() {
  view()->setMinimumWidth(std::clamp(widestTitle() + roomBesideTitle, width(), widestMenu));
  QComboBox::showPopup();
}

void PopUpWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    QComboBox::keyPressEvent(event);
    return;
  }
  event->accept();
  if (!event->isAutoRepeat()) showPopup();
}

void PopUpWidget::wheelEvent(QWheelEvent* event) {
  // Scrolling past a pop-up must not change a setting.
  event->ignore();
}

int PopUpWidget::widestTitle() const {
  int widest = 0;
  for (int i = 0; i < count(); ++i) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(itemText(i)));
  }
  return widest;
}

}  // namespace vorrin
