#include "platform/view.h"

#include <gtest/gtest.h>

#include <QPointer>
#include <vector>

#include "platform/stack_view.h"
#include "platform/text_field.h"
#include "qt_driver.h"

namespace vorrin {
namespace {

using driver::deleteWhatIsLeft;

StackView column(std::initializer_list<View> views) {
  return StackView::make(Orientation::vertical, 10, std::vector<View>(views));
}

TEST(QtView, a_view_on_its_own_dies_with_its_last_value) {
  auto field = std::make_unique<TextField>(TextField::field("text"));
  auto copy = std::make_unique<TextField>(*field);
  const QPointer<QWidget> widget = &widgetOf(*field);
  field.reset();
  deleteWhatIsLeft();
  EXPECT_FALSE(widget.isNull());
  copy.reset();
  deleteWhatIsLeft();
  EXPECT_TRUE(widget.isNull());
}

TEST(QtView, a_view_inside_another_lives_and_dies_with_that_one) {
  QPointer<QWidget> inner;
  {
    const StackView stack = column({});
    {
      const TextField field = TextField::field("text");
      inner = &widgetOf(field);
      stack.addArrangedSubview(field);
    }
    deleteWhatIsLeft();
    ASSERT_FALSE(inner.isNull());
    EXPECT_EQ(TextField::from(stack.subviews().front())->text(), "text");
  }
  deleteWhatIsLeft();
  EXPECT_TRUE(inner.isNull());
}

TEST(QtView, a_description_names_the_kind_and_what_the_view_says) {
  EXPECT_EQ(Button::push("Load", {}).description(), "Button \"Load\"");
  EXPECT_EQ(TextField::wrappingLabel("OFF").description(), "Label \"OFF\"");
  const Button check = Button::checkbox("", {});
  check.setAccessibilityLabel("Enable");
  EXPECT_EQ(check.description(), "Checkbox \"Enable\"");
  EXPECT_EQ(View::spacer().description(), "Spacer");
}

}  // namespace
}  // namespace vorrin
