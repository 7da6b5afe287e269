#include "platform/linux/widgets/palette.h"

#include <QFontDatabase>
#include <QWidget>
#include <cmath>

namespace vorrin {

namespace {

constexpr double disabledAlpha = 0.45;

QColor dimmed(QColor color) {
  color.setAlphaF(color.alphaF() * static_cast<float>(disabledAlpha));
  return color;
}

bool isText(QPalette::ColorRole role) {
  return role == QPalette::WindowText || role == QPalette::Text || role == QPalette::ButtonText;
}

void setColor(QPalette& palette, QPalette::ColorRole role, const QColor& color) {
  palette.setColor(QPalette::Active, role, color);
  palette.setColor(QPalette::Inactive, role, color);
  palette.setColor(QPalette::Disabled, role, isText(role) ? dimmed(color) : color);
}

QFont::Weight nativeWeight(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return QFont::Normal;
    case FontWeight::medium:
      return QFont::Medium;
    case FontWeight::semibold:
      return QFont::DemiBold;
  }
  return QFont::Normal;
}

}  // namespace

QColor nativeColor(const Color& color) {
  return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                          static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

QFont nativeFont(const Font& font) {
  const auto family = font.family == FontFamily::monospacedSystem ? QFontDatabase::FixedFont
                                                                  : QFontDatabase::GeneralFont;
  QFont native = QFontDatabase::systemFont(family);
  native.setPixelSize(static_cast<int>(std::lround(font.size)));
  native.setWeight(nativeWeight(font.weight));
  return native;
}

QPalette darkPalette() {
  QPalette palette;
  setColor(palette, QPalette::Window, nativeColor(Color::gray(0.09)));
  setColor(palette, QPalette::WindowText, nativeColor(Color::gray(0.84)));
  setColor(palette, QPalette::Base, nativeColor(Color::gray(0.065)));
  setColor(palette, QPalette::Text, nativeColor(Color::gray(0.84)));
  setColor(palette, QPalette::PlaceholderText, nativeColor({1, 1, 1, 0.5}));
  setColor(palette, QPalette::Button, nativeColor(Color::gray(0.14)));
  setColor(palette, QPalette::ButtonText, nativeColor(Color::gray(0.84)));
  setColor(palette, QPalette::Highlight, nativeColor(Color::sRgb(0.11, 0.36, 0.2)));
  setColor(palette, QPalette::HighlightedText, nativeColor(Color::gray(0.95)));
  setColor(palette, QPalette::ToolTipBase, nativeColor(Color::gray(0.12)));
  setColor(palette, QPalette::ToolTipText, nativeColor(Color::gray(0.84)));
  return palette;
}

void setPaletteColor(QWidget& widget, QPalette::ColorRole role, const Color& color) {
  QPalette palette = widget.palette();
  setColor(palette, role, nativeColor(color));
  if (palette != widget.palette()) widget.setPalette(palette);
}

}  // namespace vorrin
