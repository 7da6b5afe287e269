#include "platform/linux/widgets/scroll_view.h"

namespace vorrin {

ScrollView::ScrollView(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  viewport()->setAutoFillBackground(false);
}

}  // namespace vorrin
