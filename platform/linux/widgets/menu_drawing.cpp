#include "platform/linux/widgets/menu_drawing.h"

#include <QPainterPath>
#include <algorithm>
#include <array>

#include "platform/linux/widgets/palette.h"

namespace vorrin {

namespace {

constexpr double menuRadius = 8;
constexpr double itemRadius = 5;
constexpr int menuItemHeight = 24;
constexpr int roomBeforeKeys = 28;
constexpr int shortestSlider = 24;

}  // namespace

const QColor& accent() {
  static const QColor color = nativeColor(Color::sRgb(0.25, 0.9, 0.48));
  return color;
}

QColor white(double alpha) {
  return nativeColor({1, 1, 1, alpha});
}

bool has(const QStyleOption& option, QStyle::StateFlag flag) {
  return (option.state & flag) != 0;
}

void drawBezel(QPainter& painter, const QRect& rect, double radius, const QColor& fill,
               const QPen& edge) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const double inset = edge.style() == Qt::NoPen ? 0 : edge.widthF() / 2;
  painter.setPen(edge);
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), radius - inset,
                          radius - inset);
  painter.restore();
}

void drawCheckMark(QPainter& painter, const QRectF& box, const QColor& color) {
  const std::array<QPointF, 3> corners = {
      box.topLeft() + QPointF(0.23 * box.width(), 0.52 * box.height()),
      box.topLeft() + QPointF(0.43 * box.width(), 0.72 * box.height()),
      box.topLeft() + QPointF(0.78 * box.width(), 0.29 * box.height())};
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(corners.data(), static_cast<int>(corners.size()));
  painter.restore();
}

void drawMenuPanel(const QStyleOption& menu, QPainter& painter) {
  drawBezel(painter, menu.rect, menuRadius, menu.palette.color(QPalette::Window), {white(0.18), 1});
}

QRegion menuMask(const QSize& size) {
  QPainterPath path;
  path.addRoundedRect(QRectF({}, size), menuRadius - 1, menuRadius - 1);
  return QRegion(path.toFillPolygon().toPolygon());
}

void drawMenuBarItem(const QStyleOptionMenuItem& item, QPainter& painter) {
  const bool isActive = has(item, QStyle::State_Selected);
  painter.fillRect(item.rect, item.palette.color(QPalette::Window));
  if (isActive)
    drawBezel(painter, item.rect.adjusted(1, 2, -1, -2), itemRadius, white(0.12), Qt::NoPen);
  painter.setPen(item.palette.color(QPalette::WindowText));
  painter.drawText(item.rect, Qt::AlignCenter | Qt::TextShowMnemonic, item.text);
}

QRect drawItem(const QStyleOption& item, const QString& title, int textFlags, QPainter& painter) {
  const bool isActive = has(item, QStyle::State_Selected);
  const QPalette& colors = item.palette;
  if (isActive) drawBezel(painter, item.rect, itemRadius, colors.highlight().color(), Qt::NoPen);
  painter.setPen(colors.color(isActive ? QPalette::HighlightedText : QPalette::WindowText));
  const QRect room = item.rect.adjusted(itemInset, 0, -itemInset, 0);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | textFlags, title);
  return room;
}

void drawMenuItem(const QStyleOptionMenuItem& item, QPainter& painter) {
  const QString title = item.text.section('\t', 0, 0);
  const QRect room = drawItem(item, title, Qt::TextShowMnemonic, painter);
  painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter, item.text.section('\t', 1));
}

QSize menuItemSize(const QSize& title) {
  return {title.width() + 2 * itemInset + roomBeforeKeys, menuItemHeight};
}

void drawScrollBar(const QStyleOptionSlider& bar, QPainter& painter) {
  const bool isInUse = has(bar, QStyle::State_Sunken) || has(bar, QStyle::State_MouseOver);
  const QRect slider = scrollBarPart(bar, QStyle::SC_ScrollBarSlider).adjusted(2, 2, -2, -2);
  drawBezel(painter, slider, scrollBarExtent / 2.0 - 2, white(isInUse ? 0.4 : 0.25), Qt::NoPen);
}

QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
  const bool isUpright = bar.orientation == Qt::Vertical;
  const int length = isUpright ? bar.rect.height() : bar.rect.width();
  const int range = bar.maximum - bar.minimum;
  const int whole = std::max(range + bar.pageStep, 1);
  const int slider = std::max(length * bar.pageStep / whole, std::min(shortestSlider, length));
  const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                    length - slider, bar.upsideDown);
  const auto between = [&](int from, int to) {
    return isUpright ? QRect(bar.rect.x(), bar.rect.y() + from, bar.rect.width(), to - from)
                     : QRect(bar.rect.x() + from, bar.rect.y(), to - from, bar.rect.height());
  };
  switch (part) {
    case QStyle::SC_ScrollBarSlider:
      return between(start, start + slider);
    case QStyle::SC_ScrollBarGroove:
      return bar.rect;
    case QStyle::SC_ScrollBarSubPage:
      return between(0, start);
    case QStyle::SC_ScrollBarAddPage:
      return between(start + slider, length);
    default:
      return {};
  }
}

}  // namespace vorrin
