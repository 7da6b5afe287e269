#include "platform/stack_view.h"

#include <gtest/gtest.h>

#include <array>

#include "driver.h"
#include "platform/button.h"

namespace vorrin {
namespace {

class Stack : public testing::Test {
 protected:
  Stack() : window_(Window::make({400, 300}, window_style::titled)) {}

  /// Hangs the stack into a window, 400 points wide, and lays it out.
  void hang(const StackView& stack) {
    window_.contentView().addTopCentered(stack, 0, 400);
    window_.contentView().layoutSubtreeIfNeeded();
  }

  [[nodiscard]] Rect place(const View& view) const {
    return driver::place(view, window_.contentView());
  }

 private:
  Window window_;
};

TEST_F(Stack, a_row_places_its_views_side_by_side_with_the_spacing_between) {
  const Button first = Button::push("first", {});
  const Button second = Button::push("second", {});
  hang(StackView::make(Orientation::horizontal, 12,
                       std::array<View, 3>{first, second, View::spacer()}));
  EXPECT_EQ(place(first).x, 0);
  EXPECT_EQ(place(second).x, place(first).maxX() + 12);
  EXPECT_EQ(place(first).y, place(second).y);
}

TEST_F(Stack, a_spacer_takes_the_rest_of_a_row) {
  const TextField label = TextField::wrappingLabel("label");
  const Button button = Button::push("button", {});
  hang(StackView::make(Orientation::horizontal, 12,
                       std::array<View, 3>{label, View::spacer(), button}));
  EXPECT_EQ(place(label).x, 0);
  EXPECT_EQ(place(button).maxX(), 400);
}

TEST_F(Stack, a_column_places_its_views_below_each_other_at_the_left) {
  const TextField label = TextField::wrappingLabel("label");
  const Button button = Button::push("button", {});
  hang(StackView::make(Orientation::vertical, 18, std::array<View, 2>{label, button}));
  EXPECT_EQ(place(button).x, 0);
  EXPECT_EQ(place(button).y, place(label).maxY() + 18);
  EXPECT_LT(place(button).width, 400);
}

TEST_F(Stack, views_added_later_are_shown_too) {
  const StackView stack = StackView::make(Orientation::vertical, 18, {});
  hang(stack);
  const Button late = Button::push("late", {});
  stack.addArrangedSubview(late);
  stack.layoutSubtreeIfNeeded();
  EXPECT_GT(late.bounds().height, 0);
  EXPECT_EQ(stack.subviews().size(), 1U);
}

TEST_F(Stack, insets_keep_room_above_and_before_its_views) {
  const TextField label = TextField::wrappingLabel("label");
  const StackView stack = StackView::make(Orientation::vertical, 18, std::array<View, 1>{label});
  stack.setEdgeInsets(16);
  hang(stack);
  EXPECT_EQ(place(label).x, 16);
  EXPECT_EQ(place(label).y, 16);
}

}  // namespace
}  // namespace vorrin
