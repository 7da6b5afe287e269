#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>

#include "layout_test.h"
#include "platform/fake/system/fake_system.h"
#include "platform/linux/widgets/label_widget.h"
#include "qt_interface_test.h"

// The same tests run at one and at two pixels a point.

namespace vorrin {
namespace {

class QtLayout : public Layout {
 protected:
  [[nodiscard]] QWidget& window() const { return widgetOf(app->window); }
};

TEST_F(QtLayout, every_label_and_button_has_the_room_that_its_text_needs) {
  fake::system().trusted = false;
  launch();
  for (const View& control : allControls()) {
    const QWidget& widget = widgetOf(control);
    if (const auto* label = widgetAs<LabelWidget>(control); label != nullptr) {
      EXPECT_GE(label->height(), label->heightForWidth(label->width())) << control.description();
    } else if (Button::from(control)) {
      EXPECT_GE(widget.width(), widget.sizeHint().width()) << control.description();
      EXPECT_GE(widget.height(), widget.sizeHint().height()) << control.description();
    }
  }
}

TEST_F(QtLayout, fields_and_pop_ups_are_of_one_height_and_their_texts_start_at_one_inset) {
  savePreset("HH", *app->currentPreset());
  app->presetName.setText("HH");
  content().layoutSubtreeIfNeeded();
  EXPECT_EQ(app->presetName.bounds().height, app->presetList.bounds().height);
  const double start = startOfText(widgetOf(app->presetName));
  EXPECT_GT(start, 6);
  EXPECT_NEAR(start, startOfText(widgetOf(app->presetList)), 1);
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

/// A window that its manager gives less room than it asks for, as in a tile or on a small screen.
class QtSmallWindow : public QtInterfaceTest {
 protected:
  void resizeWindow(int width, int height) const {
    window().windowHandle()->resize(width, height);
    const QScrollBar& bar = *window().findChild<QScrollArea*>()->verticalScrollBar();
    ASSERT_TRUE(waitFor([&] { return window().height() == height && bar.isVisible(); }));
  }

  /// Whether all of it can be seen, and so clicked.
  [[nodiscard]] bool isInSight(const View& view) const {
    const QWidget& widget = widgetOf(view);
    return widget.visibleRegion() == QRegion(widget.rect());
  }

  void scrollBy(int lines) const {
    const QPointF place = window().rect().center();
    for (int i = 0; i < std::abs(lines); ++i) {
      QWheelEvent wheel(place, place, {}, {0, lines > 0 ? -120 : 120}, Qt::NoButton, Qt::NoModifier,
                        Qt::NoScrollPhase, false);
      QSpontaneKeyEvent::setSpontaneous(&wheel);
      qApp->notify(window().windowHandle(), &wheel);
    }
  }
};

TEST_F(QtSmallWindow, every_control_comes_into_sight_by_tab) {
  for (const QSize size : {QSize(640, 480), QSize(580, 300), QSize(340, 200)}) {
    resizeWindow(size.width(), size.height());
    for (const View& control : allControls()) {
      const QWidget& widget = widgetOf(control);
      if (widget.focusPolicy() == Qt::NoFocus || !widget.isEnabled()) continue;
      press(Qt::Key_Tab);
      ASSERT_TRUE(widget.hasFocus()) << control.description();
      EXPECT_TRUE(isInSight(control)) << control.description() << " at " << size.width();
    }
  }
}

TEST_F(QtSmallWindow,
       the_wheel_scrolls_to_the_end_and_back_also_over_pop_ups_and_so_do_the_page_keys) {
  resizeWindow(640, 480);
  ASSERT_FALSE(isInSight(button("Retry connection")));
  scrollBy(30);
  EXPECT_TRUE(isInSight(button("Retry connection")));
  click(button("Retry connection"));
  scrollBy(-30);
  EXPECT_TRUE(isInSight(button("Full screen")));
  EXPECT_EQ(app->output.indexOfSelectedItem(), 1);
  press(Qt::Key_PageDown);
  EXPECT_TRUE(isInSight(button("Retry connection")));
  press(Qt::Key_PageUp);
  EXPECT_TRUE(isInSight(button("Full screen")));
}

TEST_F(QtSmallWindow, a_bar_at_the_side_makes_none_at_the_bottom_necessary) {
  resizeWindow(580, 480);
  const auto bars = window().findChildren<QScrollBar*>();
  EXPECT_EQ(std::ranges::count_if(bars, [](const QScrollBar* bar) { return bar->isVisible(); }), 1);
}

TEST_F(QtSmallWindow, where_everything_fits_nothing_scrolls) {
  const Rect before = button("Full screen").boundsIn(app->window.contentView());
  scrollBy(30);
  EXPECT_TRUE(isInSight(button("Full screen")));
  EXPECT_EQ(button("Full screen").boundsIn(app->window.contentView()).y, before.y);
  for (const auto* bar : window().findChildren<QScrollBar*>()) EXPECT_FALSE(bar->isVisible());
}

TEST_F(QtLayout, full_screen_and_back_gives_the_window_its_size_again) {
  const QRect before = window().geometry();
  click(button("Full screen"));
  ASSERT_TRUE(waitFor([this] { return window().isFullScreen(); }));
  expectNothingClipped();
  click(button("Full screen"));
  ASSERT_TRUE(waitFor([this] { return !window().isFullScreen(); }));
  EXPECT_TRUE(waitFor([&] { return window().geometry().size() == before.size(); }));
}

TEST_F(QtLayout, leaving_the_full_screen_gives_a_maximised_window_its_state_again) {
  window().showMaximized();
  ASSERT_TRUE(waitFor([this] { return window().isMaximized(); }));
  QTest::keyClick(window().windowHandle(), Qt::Key_F11);
  ASSERT_TRUE(waitFor([this] { return window().isFullScreen(); }));
  QTest::keyClick(window().windowHandle(), Qt::Key_F11);
  EXPECT_TRUE(waitFor([this] { return !window().isFullScreen() && window().isMaximized(); }));
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
