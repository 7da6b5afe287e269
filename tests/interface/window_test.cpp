#include "platform/window.h"

#include <gtest/gtest.h>

#include "driver.h"

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
  EXPECT_FALSE(driver::isVisible(window));
  window.orderFront();
  EXPECT_TRUE(driver::isVisible(window));
  driver::takeAway(window);
}

TEST(Window, style_and_behaviour_come_back) {
  const Window window = Window::make({300, 200}, everyStyle);
  EXPECT_EQ(window.styleMask(), 15U);
  EXPECT_EQ(window.collectionBehavior(), 0U);
  window.setCollectionBehavior(window_collection_behavior::fullScreenPrimary);
  EXPECT_EQ(window.collectionBehavior(), 128U);
}

TEST(Window, the_background_comes_back_exactly_also_after_the_dark_appearance) {
  const Window window = Window::make({300, 200}, everyStyle);
  window.setBackgroundColor(Color::black());
  window.setDarkAppearance();
  EXPECT_EQ(window.backgroundColor(), Color::black());
}

TEST(Window, the_content_view_is_always_the_same) {
  const Window window = Window::make({300, 200}, everyStyle);
  EXPECT_EQ(window.contentView(), window.contentView());
  EXPECT_TRUE(window.contentView().subviews().empty());
}

TEST(Window, copies_refer_to_the_same_window) {
  const Window window = Window::make({300, 200}, everyStyle);
  const Window copy = window;  // NOLINT(performance-unnecessary-copy-initialization)
  copy.setTitle("same");
  EXPECT_EQ(driver::title(window), "same");
}

}  // namespace
}  // namespace vorrin
