#include "platform/linux/widgets/scroll_view.h"

#include <QStyle>

namespace vorrin {

ScrollView::ScrollView(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  viewport()->setAutoFillBackground(false);
}

int ScrollView::barExtent() const {
  return style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
}

}  // namespace vorrin
