#include "platform/linux/widgets/top_centered_layout.h"

#include <QWidget>

namespace vorrin {

void TopCenteredLayout::add(QWidget& widget, int top, int width) {
  addChildWidget(&widget);
  // In a window on the screen it would else stay hidden, and unplaced, until the next events.
  if (parentWidget()->isVisible()) widget.show();
  hung_.push_back({std::make_unique<QWidgetItem>(&widget), top, width});
  invalidate();
}

int TopCenteredLayout::count() const {
  return static_cast<int>(hung_.size());
}

QLayoutItem* TopCenteredLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? hung_[static_cast<std::size_t>(index)].item.get()
                                       : nullptr;
}

QLayoutItem* TopCenteredLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  QLayoutItem* item = hung_[static_cast<std::size_t>(index)].item.release();
  hung_.erase(hung_.begin() + index);
  return item;
}

void TopCenteredLayout::addItem(QLayoutItem* item) {
  hung_.push_back({std::unique_ptr<QLayoutItem>(item), 0, item->sizeHint().width()});
}

void TopCenteredLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  for (const Hung& hung : hung_) {
    const int height = hung.item->hasHeightForWidth() ? hung.item->heightForWidth(hung.width)
                                                      : hung.item->sizeHint().height();
    const int left = rect.x() + (rect.width() - hung.width) / 2;
    hung.item->setGeometry({left, rect.y() + hung.top, hung.width, height});
  }
}

}  // namespace vorrin
