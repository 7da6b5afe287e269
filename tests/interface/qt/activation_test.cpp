#include "qt_interface_test.h"

// A press that only brings the window to the front works none of its controls.

namespace vorrin {
namespace {

class QtActivation : public QtInterfaceTest {
 protected:
  QtActivation() {
    // As the library tells it; its offscreen windows never lose the keyboard.
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    QTest::lastMouseTimestamp = driver::monotonicMilliseconds();
  }
  ~QtActivation() override { activate(); }

  static void activate() { Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive); }

  [[nodiscard]] QPoint placeOfBox() const {
    const QWidget& box = widgetOf(app->checks[0]);
    return box.mapTo(&window(), box.rect().center());
  }
};

TEST_F(QtActivation, clicks_that_were_on_their_way_to_it_do_nothing) {
  for (int i = 0; i < 10; ++i) {
    if (i == 5) activate();
    QTest::lastMouseTimestamp = driver::monotonicMilliseconds();
    QTest::mouseClick(window().windowHandle(), Qt::LeftButton, {}, placeOfBox());
  }
  EXPECT_TRUE(app->checks[0].isOn());
  EXPECT_FALSE(widgetOf(app->checks[0]).hasFocus());
}

TEST_F(QtActivation, the_release_of_a_press_that_counts_for_nothing_does_not_count_either) {
  QTest::mousePress(window().windowHandle(), Qt::LeftButton, {}, placeOfBox());
  activate();
  QTest::lastMouseTimestamp += 1000;
  QTest::mouseRelease(window().windowHandle(), Qt::LeftButton, {}, placeOfBox());
  EXPECT_TRUE(app->checks[0].isOn());
  click(app->checks[0]);
  EXPECT_FALSE(app->checks[0].isOn());
}

TEST_F(QtActivation, a_press_stamped_by_another_machine_s_clock_counts_from_when_it_arrives) {
  activate();
  QTest::lastMouseTimestamp -= 100'000;
  QTest::mouseClick(window().windowHandle(), Qt::LeftButton, {}, placeOfBox());
  EXPECT_TRUE(app->checks[0].isOn());
  EXPECT_TRUE(waitFor([this] {
    QTest::mouseClick(window().windowHandle(), Qt::LeftButton, {}, placeOfBox());
    return !app->checks[0].isOn();
  }));
}

}  // namespace
}  // namespace vorrin
