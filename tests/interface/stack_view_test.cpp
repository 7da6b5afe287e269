#include "platform/stack_view.h"

#include <array>

#include "interface_test.h"
#include "platform/text_field.h"

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

  [[nodiscard]] Rect place(const View& view) const { return view.boundsIn(window_.contentView()); }

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

TEST_F(Stack, insets_keep_room_at_all_edges) {
  const TextField label = TextField::wrappingLabel("label");
  const StackView stack = StackView::make(Orientation::vertical, 18, std::array<View, 1>{label});
  stack.setEdgeInsets(16);
  hang(stack);
  EXPECT_EQ(place(label).x, 16);
  EXPECT_EQ(place(label).y, 16);
  EXPECT_EQ(place(label).maxX(), 400 - 16);
  EXPECT_EQ(stack.bounds().height, label.bounds().height + 32);
}

TEST_F(Stack, a_label_in_a_column_wraps_and_pushes_down_what_is_below) {
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

TEST_F(Stack, a_label_that_shrinks_lets_the_views_below_rise) {
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

TEST_F(Stack, a_pop_up_gives_way_when_its_row_is_full) {
  const PopUpButton popUp = PopUpButton::make({});
  popUp.addItems(std::array<std::string, 1>{std::string(80, 'W')});
  const Button button = Button::push("button", {});
  const StackView row =
      StackView::make(Orientation::horizontal, 12, std::array<View, 2>{popUp, button});
  hang(StackView::make(Orientation::vertical, 0, std::array<View, 1>{row}));
  EXPECT_LE(place(button).maxX(), 400);
  EXPECT_EQ(place(button).width, widgetOf(button).sizeHint().width());
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

}  // namespace
}  // namespace vorrin
