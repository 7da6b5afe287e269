#include "platform/linux/widgets/plane_widget.h"

#include <QPainter>

namespace vorrin {

void PlaneWidget::setLayer(const Layer& layer) {
  layer_ = layer;
  update();
}

void PlaneWidget::paintEvent(QPaintEvent*) {
  if (layer_.background.alpha() == 0 && layer_.border.alpha() == 0) return;
  QPainter painter(this);
  if (layer_.cornerRadius <= 0 && layer_.borderWidth <= 0) {
    painter.fillRect(rect(), layer_.background);
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  // The line lies wholly inside the edge, so that it is as sharp as the pixels allow.
  const double inset = layer_.borderWidth / 2;
  const QRectF edge = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
  painter.setPen(layer_.borderWidth > 0 ? QPen(layer_.border, layer_.borderWidth)
                                        : QPen(Qt::NoPen));
  painter.setBrush(layer_.background);
  painter.drawRoundedRect(edge, layer_.cornerRadius - inset, layer_.cornerRadius - inset);
}

}  // namespace vorrin
