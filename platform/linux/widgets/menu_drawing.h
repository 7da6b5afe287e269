#pragma once

#include <QPainter>
#include <QStyleOption>

namespace vorrin {

/// Between a menu's edge and its items.
inline constexpr int menuPadding = 4;
/// Between an item's edge and its title. Titles stand below that of a pop-up's own.
inline constexpr int itemInset = 6;
inline constexpr int scrollBarExtent = 10;

const QColor& accent();
QColor white(double alpha);
bool has(const QStyleOption& option, QStyle::StateFlag flag);

/// A plane with round corners whose edge line, or ring, lies wholly inside `rect`, so that it is as
/// sharp as the pixels allow.
void drawBezel(QPainter& painter, const QRect& rect, double radius, const QColor& fill,
               const QPen& edge);
void drawCheckMark(QPainter& painter, const QRectF& box, const QColor& color);

/// The ground of menus and of the lists of pop-ups.
void drawMenuPanel(const QStyleOption& menu, QPainter& painter);
/// What there is of it to be seen, where no compositor blends its corners.
QRegion menuMask(const QSize& size);
void drawMenuBarItem(const QStyleOptionMenuItem& item, QPainter& painter);
/// Draws the ground and the title of an item of a menu or list. Returns the room for what it says.
QRect drawItem(const QStyleOption& item, const QString& title, int textFlags, QPainter& painter);
void drawMenuItem(const QStyleOptionMenuItem& item, QPainter& painter);
QSize menuItemSize(const QSize& title);

/// A slim one that has a slider and nothing else.
void drawScrollBar(const QStyleOptionSlider& bar, QPainter& painter);
QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part);

}  // namespace vorrin
