#include "platform/linux/widgets/pop_up_widget.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QListView>
#include <QStyledItemDelegate>
#include <QWheelEvent>

#include "platform/linux/widgets/menu_drawing.h"
#include "platform/linux/widgets/palette.h"

namespace vorrin {

namespace {

constexpr int shownItems = 16;
constexpr int itemHeight = 22;
constexpr int markSize = 11;
constexpr int markRoom = markSize + 3;

/// One item of the opened menu. That of the pop-up's title has a mark, as the pointer may be at
/// another one.
class PopUpItem : public QStyledItemDelegate {
 public:
  explicit PopUpItem(QComboBox& popUp) : QStyledItemDelegate(&popUp), popUp_(popUp) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const int most = option.rect.width() - 2 * itemInset - markRoom;
    const QString title = index.data().toString();
    painter->setFont(option.font);
    QRect mark = drawItem(option, option.fontMetrics.elidedText(title, Qt::ElideMiddle, most),
                          Qt::TextSingleLine, *painter);
    if (index.row() != popUp_.currentIndex()) return;
    mark.setLeft(mark.right() + 1 - markSize);
    mark.setTop(mark.center().y() - markSize / 2);
    mark.setHeight(markSize);
    drawCheckMark(*painter, mark, accent());
  }

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    // As wide as the menu in any case.
    return {0, itemHeight};
  }

 private:
  QComboBox& popUp_;
};

class PopUpList : public QListView {
 public:
  PopUpList() {
    setViewportMargins(menuPadding, menuPadding, menuPadding, menuPadding);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    // Or each of a thousand items is measured when the menu opens.
    setUniformItemSizes(true);
  }
};

}  // namespace

PopUpWidget::PopUpWidget(Action popUpAction)
    : NativeButton(ButtonKind::popUp, std::move(popUpAction)) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setSizeAdjustPolicy(AdjustToContents);
  setMaxVisibleItems(shownItems);
  connect(this, &QComboBox::activated, this, [this] { perform(*this); });
  // From the start: the library makes a list with the first font, and measures every item in its
  // own.
  setView(new PopUpList);
  setItemDelegate(new PopUpItem(*this));
  view()->parentWidget()->setAttribute(Qt::WA_TranslucentBackground);
}

void PopUpWidget::showPopup() {
  // Until now it had the window's, as it changed.
  view()->parentWidget()->setPalette(darkPalette());
  QComboBox::showPopup();
  // Qt 6.8 starts at the first item where the list is new.
  view()->setCurrentIndex(model()->index(currentIndex(), modelColumn()));
  view()->parentWidget()->setMask(menuMask(view()->parentWidget()->size()));
}

void PopUpWidget::hidePopup() {
  QComboBox::hidePopup();
  // The pointer left while the menu had it.
  setAttribute(Qt::WA_UnderMouse, rect().contains(mapFromGlobal(QCursor::pos())));
  update();
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

}  // namespace vorrin
