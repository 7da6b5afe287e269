#include "platform/stack_view.h"

#include <gtest/gtest.h>

#include <array>

#include "platform/pop_up_button.h"
#include "qt_driver.h"

namespace vorrin {
namespace {

class QtStack : public testing::Test {
 protected:
  QtStack() : window_(Window::make({400, 300}, window_style::titled)) {}

  /// Hangs the stack into a window, 400 points wide, and lays it out.
  void hang(const StackView& stack) {
    window_.contentView().addTopCentered(stack, 0, 400);
    window_.contentView().layoutSubtreeIfNeeded();
  }

  [[nodiscard]] Rect place(const View& view) const { return view.boundsIn(window_.contentView()); }

 private:
  Window window_;
};

TEST_F(QtStack, insets_keep_room_at_all_edges) {
  const TextField label = TextField::wrappingLabel("label");
  const StackView stack = StackView::make(Orientation::vertical, 18, std::array<View, 1>{label});
  stack.setEdgeInsets(16);
  hang(stack);
  EXPECT_EQ(place(label).x, 16);
  EXPECT_EQ(place(label).y, 16);
  EXPECT_EQ(place(label).maxX(), 400 - 16);
  EXPECT_EQ(stack.bounds().height, label.bounds().height + 32);
}

TEST_F(QtStack, a_label_in_a_column_wraps_and_pushes_down_what_is_below) {
  const TextField label = TextField::wrappingLabel("label");
  const Button below = Button::push("below", {});
  const StackView stack =
      StackView::make(Orientation::vertical, 18, std::array<View, 2>{label, below});
  hang(stack);
  const double before = place(below).y;
  label.setText(std::string(150, 'w'));
  stack.layoutSubtreeIfNeeded();
  EXPECT_GT(place(below).y, before);
  EXPECT_EQ(stack.bounds().width, 400);
}

TEST_F(QtStack, a_label_that_shrinks_lets_the_views_below_rise) {
  const TextField label = TextField::wrappingLabel(std::string(150, 'w'));
  const Button below = Button::push("below", {});
  const StackView stack =
      StackView::make(Orientation::vertical, 18, std::array<View, 2>{label, below});
  hang(stack);
  label.setText("w");
  stack.layoutSubtreeIfNeeded();
  EXPECT_EQ(place(below).y, place(label).maxY() + 18);
  EXPECT_LT(place(label).height, 30);
}

TEST_F(QtStack, a_pop_up_gives_way_when_its_row_is_full) {
  const PopUpButton popUp = PopUpButton::make({});
  popUp.addItems(std::array<std::string, 1>{std::string(80, 'W')});
  const Button button = Button::push("button", {});
  const StackView row =
      StackView::make(Orientation::horizontal, 12, std::array<View, 2>{popUp, button});
  hang(StackView::make(Orientation::vertical, 0, std::array<View, 1>{row}));
  EXPECT_LE(place(button).maxX(), 400);
  EXPECT_EQ(place(button).width, widgetOf(button).sizeHint().width());
}

}  // namespace
}  // namespace vorrin
