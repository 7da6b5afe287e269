#include "platform/linux/widgets/plane_widget.h"

#include <QPainter>

#include "platform/linux/widgets/menu_drawing.h"

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
  const QPen edge(layer_.border, layer_.borderWidth);
  drawBezel(painter, rect(), layer_.cornerRadius, layer_.background,
            layer_.borderWidth > 0 ? edge : QPen(Qt::NoPen));
}

}  // namespace vorrin
