#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include "platform/color.h"
#include "platform/font.h"

class QWidget;

namespace vorrin {

QColor nativeColor(const Color& color);
QFont nativeFont(const Font& font);

/// The colours of everything that the program does not colour itself: sheets, menus, lists.
QPalette darkPalette();

/// Gives `role` of `widget` a colour, and its disabled form a dimmer one.
void setPaletteColor(QWidget& widget, QPalette::ColorRole role, const Color& color);

}  // namespace vorrin
