#include <QTest>

#include "platform/fake/system/fake_system.h"
#include "platform/linux/widgets/label_widget.h"
#include "qt_interface_test.h"

// The same tests run at one and at two pixels a point.

namespace vorrin {
namespace {

constexpr Size compact{580, 700};

class QtLayout : public QtInterfaceTest {
 protected:
  void layOut(Size size) {
    app->window.setContentSize(size);
    content().layoutSubtreeIfNeeded();
  }

  [[nodiscard]] View content() const { return app->window.contentView(); }

  void expectNothingClipped() {
    content().layoutSubtreeIfNeeded();
    const Rect room = content().bounds();
    for (const View& control : allControls()) {
      const Rect rect = control.boundsIn(content());
      EXPECT_GE(rect.x, 0) << control.description();
      EXPECT_GE(rect.y, 0) << control.description();
      EXPECT_LE(rect.maxX(), room.width) << control.description();
      EXPECT_LE(rect.maxY(), room.height) << control.description();
    }
  }
};

TEST_F(QtLayout, every_label_has_the_room_that_its_text_needs) {
  fake::system().trusted = false;
  launch();
  for (const View& control : allControls()) {
    const auto* label = widgetAs<LabelWidget>(control);
    if (label == nullptr) continue;
    EXPECT_GE(label->height(), label->heightForWidth(label->width())) << control.description();
  }
}

TEST_F(QtLayout, every_button_has_the_room_that_its_title_needs) {
  for (const View& control : allControls()) {
    const auto found = Button::from(control);
    if (!found) continue;
    const QWidget& widget = widgetOf(control);
    EXPECT_GE(widget.width(), widget.sizeHint().width()) << control.description();
    EXPECT_GE(widget.height(), widget.sizeHint().height()) << control.description();
  }
}

TEST_F(QtLayout, the_longest_state_fits_its_row) {
  click(app->buttons[1]);
  fake::setApplicationActive(true);
  ASSERT_EQ(app->states[1].text(), "PAUSED · app focused");
  content().layoutSubtreeIfNeeded();
  EXPECT_GE(widgetOf(app->states[1]).width(), widgetOf(app->states[1]).sizeHint().width());
  expectNothingClipped();
}

TEST_F(QtLayout, the_window_cannot_be_made_smaller_than_at_the_start) {
  widgetOf(app->window).resize(100, 100);
  content().layoutSubtreeIfNeeded();
  EXPECT_EQ(content().bounds().width, compact.width);
  EXPECT_EQ(content().bounds().height, compact.height);
}

TEST_F(QtLayout, full_screen_and_back_gives_the_window_its_size_again) {
  QWidget& window = widgetOf(app->window);
  const QRect before = window.geometry();
  click(button("Full screen"));
  ASSERT_TRUE(waitFor([&window] { return window.isFullScreen(); }));
  expectNothingClipped();
  click(button("Full screen"));
  ASSERT_TRUE(waitFor([&window] { return !window.isFullScreen(); }));
  EXPECT_TRUE(waitFor([&] { return window.geometry().size() == before.size(); }));
}

TEST_F(QtLayout, leaving_the_full_screen_gives_a_maximised_window_its_state_again) {
  QWidget& window = widgetOf(app->window);
  window.showMaximized();
  ASSERT_TRUE(waitFor([&window] { return window.isMaximized(); }));
  press(Qt::Key_F11);
  ASSERT_TRUE(waitFor([&window] { return window.isFullScreen(); }));
  press(Qt::Key_F11);
  EXPECT_TRUE(waitFor([&window] { return !window.isFullScreen() && window.isMaximized(); }));
}

TEST_F(QtLayout, a_picture_has_as_many_pixels_as_the_screen_shows) {
  layOut(compact);
  QImage picture;
  const std::string png = content().pngSnapshot();
  ASSERT_TRUE(picture.loadFromData(reinterpret_cast<const uchar*>(png.data()),
                                   static_cast<int>(png.size()), "PNG"));
  const qreal scale = widgetOf(app->window).devicePixelRatioF();
  EXPECT_EQ(picture.width(), compact.width * scale);
  EXPECT_EQ(picture.height(), compact.height * scale);
  EXPECT_EQ(picture.pixelColor(1, 1), QColor(Qt::black));
}

}  // namespace
}  // namespace vorrin
