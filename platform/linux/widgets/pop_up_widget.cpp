#include "platform/linux/widgets/pop_up_widget.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QWheelEvent>
#include <algorithm>

namespace vorrin {

namespace {

constexpr int shownItems = 16;
constexpr int roomBesideTitle = 38;
constexpr int controlHeight = 24;
constexpr int smallestWidth = 64;
constexpr int widestMenu = 500;
constexpr int itemHeight = 22;
constexpr int itemInset = 9;

/// One item of the opened menu.
class PopUpItem : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const bool isSelected = (option.state & QStyle::State_Selected) != 0;
    if (isSelected) painter->fillRect(option.rect, option.palette.highlight());
    const QRect room = option.rect.adjusted(itemInset, 0, -itemInset, 0);
    const QString title = index.data().toString();
    painter->setFont(option.font);
    painter->setPen(option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(title, Qt::ElideRight, room.width()));
  }

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    // As wide as the menu in any case.
    return {0, itemHeight};
  }
};

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

QSize PopUpWidget::minimumSizeHint() const {
  return {smallestWidth, controlHeight};
}

void PopUpWidget::showPopup() {
  if (dynamic_cast<PopUpItem*>(itemDelegate()) == nullptr) {
    setItemDelegate(new PopUpItem(this));
    view()->setTextElideMode(Qt::ElideRight);
    view()->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Or each of a thousand items is measured when the menu opens.
    if (auto* list = qobject_cast<QListView*>(view())) list->setUniformItemSizes(true);
  }
  view()->setMinimumWidth(std::clamp(widestTitle() + roomBesideTitle, width(), widestMenu));
  QComboBox::showPopup();
}

void PopUpWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    event->accept();
    if (!event->isAutoRepeat()) showPopup();
  } else {
    QComboBox::keyPressEvent(event);
  }
}

void PopUpWidget::wheelEvent(QWheelEvent* event) {
  // Scrolling past a pop-up must not change a setting.
  event->ignore();
}

int PopUpWidget::widestTitle() const {
  int widest = 0;
  // No row has room for more, and lists may be long.
  for (int i = 0; i < count() && widest < widestMenu; ++i) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(itemText(i)));
  }
  return widest;
}

}  // namespace vorrin
