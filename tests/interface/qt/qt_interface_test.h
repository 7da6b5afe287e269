#pragma once

#include <QTest>

#include "interface_test.h"
#include "qt_driver.h"

namespace vorrin {

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
