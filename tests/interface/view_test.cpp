#include "platform/view.h"

#include <gmock/gmock.h>

#include <vector>

#include "platform/pop_up_button.h"
#include "platform/stack_view.h"
#include "platform/text_field.h"

namespace vorrin {
namespace {

using testing::ElementsAre;

StackView column(std::initializer_list<View> views) {
  return StackView::make(Orientation::vertical, 10, std::vector<View>(views));
}

TEST(View, a_default_made_value_refers_to_nothing) {
  const View nothing;
  EXPECT_FALSE(nothing);
  EXPECT_EQ(nothing, View());
  EXPECT_FALSE(nothing == View::spacer());
}

TEST(View, copies_are_equal_and_two_views_are_not) {
  const View first = View::spacer();
  const View copy = first;
  EXPECT_EQ(first, copy);
  EXPECT_FALSE(first == View::spacer());
}

TEST(View, subviews_are_the_views_added_in_their_order) {
  const TextField label = TextField::wrappingLabel("a");
  const Button button = Button::push("b", {});
  const View spacer = View::spacer();
  EXPECT_THAT(column({label, button, spacer}).subviews(), ElementsAre(label, button, spacer));
}

TEST(View, a_subview_found_again_shares_everything_with_the_value_it_was_added_by) {
  int calls = 0;
  const Button button = Button::push("b", {"count", [&calls](const Button&) { ++calls; }});
  const TextField field = TextField::field("");
  const StackView stack = column({button, field});
  button.setTag(7);
  field.setFont({12});
  field.setDelegate({&calls, nullptr});
  const auto buttonAgain = Button::from(stack.subviews()[0]);
  const auto fieldAgain = TextField::from(stack.subviews()[1]);
  EXPECT_EQ(buttonAgain->tag(), 7);
  EXPECT_EQ(buttonAgain->action(), "count");
  EXPECT_TRUE(fieldAgain->hasFont());
  EXPECT_EQ(fieldAgain->delegate(), &calls);
}

TEST(View, labels_fields_and_buttons_are_controls_and_stacks_and_spacers_are_not) {
  EXPECT_TRUE(TextField::wrappingLabel("").isControl());
  EXPECT_TRUE(TextField::field("").isControl());
  EXPECT_TRUE(Button::push("", {}).isControl());
  EXPECT_TRUE(Button::checkbox("", {}).isControl());
  EXPECT_TRUE(PopUpButton::make({}).isControl());
  EXPECT_FALSE(View::spacer().isControl());
  EXPECT_FALSE(column({}).isControl());
}

TEST(View, controls_have_no_subviews_whatever_the_toolkit_makes_them_of) {
  const PopUpButton popUp = PopUpButton::make({});
  popUp.addItems(std::vector<std::string>{"a"});
  for (const View& control : {View(popUp), View(Button::push("a", {})),
                              View(Button::checkbox("a", {})), View(TextField::field("a"))}) {
    column({control}).layoutSubtreeIfNeeded();
    EXPECT_TRUE(control.subviews().empty()) << control.description();
  }
}

TEST(View, a_view_is_no_field_or_button_of_another_kind) {
  EXPECT_FALSE(TextField::from(Button::push("", {})));
  EXPECT_FALSE(TextField::from(View::spacer()));
  EXPECT_FALSE(Button::from(TextField::field("")));
  EXPECT_FALSE(Button::from(View()));
  EXPECT_TRUE(Button::from(PopUpButton::make({})));
}

TEST(View, fixed_sizes_are_kept) {
  const TextField field = TextField::field("a very long text that would like more room");
  field.setWidth(75);
  field.setHeight(24);
  const StackView stack = column({field});
  stack.layoutSubtreeIfNeeded();
  EXPECT_EQ(field.bounds().width, 75);
  EXPECT_EQ(field.bounds().height, 24);
}

TEST(View, fixed_sizes_hold_without_a_layout) {
  const TextField field = TextField::field("");
  field.setWidth(300);
  field.setHeight(24);
  EXPECT_EQ(field.bounds().width, 300);
  EXPECT_EQ(field.bounds().height, 24);
}

TEST(View, using_a_value_that_refers_to_nothing_ends_the_process) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH((void)View().bounds(), "Precondition failed");
}

}  // namespace
}  // namespace vorrin
