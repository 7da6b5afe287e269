#pragma once

#include "interface_test.h"

namespace vorrin {

inline constexpr Size compact{580, 700};

/// Where the controls of the window lie.
class Layout : public InterfaceTest {
 protected:
  void layOut(Size size) {
    driver::resize(app->window, size);
    content().layoutSubtreeIfNeeded();
  }

  [[nodiscard]] View content() const { return app->window.contentView(); }
  [[nodiscard]] Rect place(const View& view) const { return driver::place(view, content()); }

  void expectNothingClipped() {
    content().layoutSubtreeIfNeeded();
    const Rect room = content().bounds();
    for (const View& control : allControls()) {
      const Rect rect = place(control);
      EXPECT_GE(rect.x, 0) << control.description();
      EXPECT_GE(rect.y, 0) << control.description();
      EXPECT_LE(rect.maxX(), room.width) << control.description();
      EXPECT_LE(rect.maxY(), room.height) << control.description();
    }
  }
};

}  // namespace vorrin
