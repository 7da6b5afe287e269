#include "platform/window.h"

#include <QScreen>
#include <QTest>

#include "interface_test.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin {
namespace {

constexpr std::uint32_t everyStyle = window_style::titled | window_style::closable |
                                     window_style::miniaturizable | window_style::resizable;

TEST(Window, the_size_is_that_of_the_content) {
  const Window window = Window::make({580, 700}, everyStyle);
  window.contentView().layoutSubtreeIfNeeded();
  EXPECT_EQ(window.contentView().bounds().width, 580);
  EXPECT_EQ(window.contentView().bounds().height, 700);
}

TEST(Window, it_is_not_shown_before_it_is_ordered_front) {
  const Window window = Window::make({300, 200}, everyStyle);
  EXPECT_FALSE(widgetOf(window).isVisible());
  window.orderFront();
  EXPECT_TRUE(widgetOf(window).isVisible());
}

TEST(Window, copies_refer_to_the_same_window_and_the_last_takes_it_away) {
  auto window = std::make_unique<Window>(Window::make({300, 200}, everyStyle));
  const QPointer<QWidget> widget = &widgetOf(*window);
  auto copy = std::make_unique<Window>(*window);
  copy->setTitle("same");
  EXPECT_EQ(widgetOf(*window).windowTitle(), "same");
  window.reset();
  deleteWhatIsLeft();
  EXPECT_FALSE(widget.isNull());
  copy.reset();
  deleteWhatIsLeft();
  EXPECT_TRUE(widget.isNull());
}

TEST(Window, style_and_behaviour_come_back) {
  const Window window = Window::make({300, 200}, everyStyle);
  EXPECT_EQ(window.styleMask(), 15U);
  EXPECT_EQ(window.collectionBehavior(), 0U);
  window.setCollectionBehavior(window_collection_behavior::fullScreenPrimary);
  EXPECT_EQ(window.collectionBehavior(), 128U);
}

TEST(Window, a_window_that_may_not_fill_the_screen_does_not) {
  const Window window = Window::make({300, 200}, everyStyle);
  window.orderFront();
  window.toggleFullScreen();
  EXPECT_FALSE(widgetOf(window).isFullScreen());
}

TEST(Window, it_is_centred_on_the_screen) {
  const Window window = Window::make({300, 200}, everyStyle);
  window.center();
  const QRect room = widgetOf(window).screen()->availableGeometry();
  const QPoint middle = widgetOf(window).geometry().center();
  EXPECT_NEAR(middle.x(), room.center().x(), 1);
  EXPECT_NEAR(middle.y(), room.center().y(), 1);
}

TEST(Window, one_that_is_larger_than_the_screen_shows_its_upper_left_part) {
  const Window window = Window::make({5000, 5000}, everyStyle);
  window.center();
  const QRect room = widgetOf(window).screen()->availableGeometry();
  EXPECT_EQ(widgetOf(window).pos(), room.topLeft());
}

TEST(Window, the_background_comes_back_exactly_also_after_the_dark_appearance) {
  const Window window = Window::make({300, 200}, everyStyle);
  window.setBackgroundColor(Color::black());
  window.setDarkAppearance();
  EXPECT_EQ(window.backgroundColor(), Color::black());
  EXPECT_EQ(widgetOf(window).palette().color(QPalette::Window), QColor(Qt::black));
}

TEST(Window, the_content_view_is_always_the_same) {
  const Window window = Window::make({300, 200}, everyStyle);
  EXPECT_EQ(window.contentView(), window.contentView());
  EXPECT_TRUE(window.contentView().subviews().empty());
}

}  // namespace
}  // namespace vorrin
