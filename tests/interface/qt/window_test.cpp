#include "platform/window.h"

#include <gtest/gtest.h>

#include <QPointer>
#include <QScreen>
#include <memory>

#include "qt_driver.h"

namespace vorrin {
namespace {

using driver::deleteWhatIsLeft;

constexpr std::uint32_t everyStyle = window_style::titled | window_style::closable |
                                     window_style::miniaturizable | window_style::resizable;

TEST(QtWindow, it_is_centred_on_the_screen) {
  const Window window = Window::make({300, 200}, everyStyle);
  window.center();
  const QRect room = widgetOf(window).screen()->availableGeometry();
  const QPoint middle = widgetOf(window).geometry().center();
  EXPECT_NEAR(middle.x(), room.center().x(), 1);
  EXPECT_NEAR(middle.y(), room.center().y(), 1);
}

TEST(QtWindow, one_that_is_larger_than_the_screen_shows_its_upper_left_part) {
  const Window window = Window::make({5000, 5000}, everyStyle);
  window.center();
  const QRect room = widgetOf(window).screen()->availableGeometry();
  EXPECT_EQ(widgetOf(window).pos(), room.topLeft());
}

}  // namespace
}  // namespace vorrin
