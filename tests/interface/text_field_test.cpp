#include "platform/text_field.h"

#include <gtest/gtest.h>

#include <vector>

#include "driver.h"

namespace vorrin {
namespace {

struct Edits {
  TextFieldDelegate delegate() {
    return {this, [this](const TextField& field) { texts.push_back(field.text()); }};
  }
  std::vector<std::string> texts;
};

/// A field in a window that is shown.
class ShownTextField : public testing::Test {
 protected:
  ShownTextField() {
    window_.contentView().addTopCentered(field, 10, 100);
    window_.orderFront();
    driver::activate(window_);
  }
  ~ShownTextField() override { driver::takeAway(window_); }

  const TextField field = TextField::field("");

 private:
  Window window_ = Window::make({300, 200}, window_style::titled);
};

TEST_F(ShownTextField, an_edit_of_the_user_tells_the_delegate_with_the_text_as_it_is_now) {
  Edits edits;
  field.setDelegate(edits.delegate());
  driver::type(field, "0.125");
  ASSERT_FALSE(edits.texts.empty());
  EXPECT_EQ(edits.texts.back(), "0.125");
  EXPECT_EQ(field.delegate(), &edits);
}

TEST_F(ShownTextField, a_delegate_may_set_the_text_that_it_is_told_of) {
  field.setDelegate({&field, [](const TextField& edited) { edited.setText("fixed"); }});
  driver::type(field, "a");
  EXPECT_EQ(field.text(), "fixed");
}

TEST_F(ShownTextField, a_delegate_may_replace_itself) {
  int told = 0;
  field.setDelegate({&told, [&told](const TextField& edited) {
                       ++told;
                       edited.setDelegate({});
                     }});
  driver::type(field, "a");
  driver::type(field, "b");
  EXPECT_EQ(field.text(), "b");
  EXPECT_EQ(told, 1);
  EXPECT_EQ(field.delegate(), nullptr);
}

TEST(TextField, a_text_that_is_set_tells_no_delegate) {
  Edits edits;
  const TextField field = TextField::field("a");
  field.setDelegate(edits.delegate());
  field.setText("b");
  EXPECT_EQ(field.text(), "b");
  EXPECT_TRUE(edits.texts.empty());
}

TEST(TextField, bytes_that_are_no_text_are_shown_as_replacement_characters) {
  EXPECT_EQ(TextField::field("a\xFF"
                             "b")
                .text(),
            "a\uFFFDb");
  EXPECT_EQ(TextField::wrappingLabel("\xC3").text(), "\uFFFD");
}

TEST(TextField, fields_can_be_edited_and_labels_cannot) {
  EXPECT_TRUE(TextField::field("").isEditable());
  EXPECT_FALSE(TextField::wrappingLabel("").isEditable());
}

TEST(TextField, colours_come_back_exactly) {
  const Color color = Color::sRgb(0.25, 0.9, 0.48);
  for (const TextField& field : {TextField::field(""), TextField::wrappingLabel("")}) {
    field.setTextColor(color);
    EXPECT_EQ(field.textColor(), color);
  }
}

TEST(TextField, the_placeholder_is_no_text) {
  const TextField field = TextField::field("");
  field.setPlaceholder("Preset name");
  EXPECT_EQ(field.text(), "");
}

}  // namespace
}  // namespace vorrin
