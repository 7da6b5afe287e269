#pragma once

#include <QTest>

#include "interface_test.h"
#include "qt_driver.h"

namespace vorrin {

/// The first column of a widget, from its left edge, that shows text; -1 where none does.
inline double startOfText(QWidget& widget) {
  const QImage picture = widget.grab().toImage();
  const int middle = picture.height() / 2;
  for (int x = 6 * qCeil(picture.devicePixelRatio()); x < picture.width(); ++x) {
    for (int y = middle - 3; y <= middle + 3; ++y) {
      if (picture.pixelColor(x, y).lightness() > 80) return x / picture.devicePixelRatio();
    }
  }
  return -1;
}

/// The window with what only Qt's has, on the screen of Qt's offscreen platform.
class QtInterfaceTest : public InterfaceTest {
 protected:
  [[nodiscard]] QWidget& window() const { return widgetOf(app->window); }
  [[nodiscard]] Sheet* sheet() const { return driver::sheetOf(app->window); }

  /// Presses and releases a key.
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QTest::keyClick(window().windowHandle(), key, modifiers);
  }
};

}  // namespace vorrin
