#include "platform/text_field.h"

#include <QLineEdit>
#include <QTest>

#include "interface_test.h"
#include "platform/linux/widgets/label_widget.h"

namespace vorrin {
namespace {

struct Edits {
  TextFieldDelegate delegate() {
    return {this, [this](const TextField& field) { texts.push_back(field.text()); }};
  }
  std::vector<std::string> texts;
};

LabelWidget& wrapping(const TextField& label) {
  auto& widget = widgetOf<LabelWidget>(label);
  widget.setWraps(true);
  return widget;
}

TEST(TextField, a_text_that_is_set_tells_no_delegate) {
  Edits edits;
  const TextField field = TextField::field("a");
  field.setDelegate(edits.delegate());
  field.setText("b");
  EXPECT_EQ(field.text(), "b");
  EXPECT_TRUE(edits.texts.empty());
}

TEST(TextField, every_edit_of_the_user_tells_the_delegate_once) {
  Edits edits;
  const TextField field = TextField::field("");
  field.setDelegate(edits.delegate());
  auto& widget = widgetOf<QLineEdit>(field);
  QTest::keyClicks(&widget, "ab");
  widget.undo();
  widget.redo();
  EXPECT_EQ(edits.texts, (std::vector<std::string>{"a", "ab", "", "ab"}));
}

TEST(TextField, a_delegate_may_set_the_text_that_it_is_told_of) {
  const TextField field = TextField::field("");
  field.setDelegate({&field, [](const TextField& edited) { edited.setText("fixed"); }});
  QTest::keyClicks(&widgetOf(field), "a");
  EXPECT_EQ(field.text(), "fixed");
}

TEST(TextField, a_delegate_may_replace_itself) {
  const TextField field = TextField::field("");
  field.setDelegate({&field, [](const TextField& edited) { edited.setDelegate({}); }});
  QTest::keyClicks(&widgetOf(field), "ab");
  EXPECT_EQ(field.text(), "ab");
  EXPECT_EQ(field.delegate(), nullptr);
}

TEST(TextField, bytes_that_are_no_text_are_shown_as_replacement_characters) {
  EXPECT_EQ(TextField::field("a\xFF"
                             "b")
                .text(),
            "a\uFFFDb");
  EXPECT_EQ(TextField::wrappingLabel("\xC3").text(), "\uFFFD");
}

TEST(TextField, a_field_gives_back_what_it_shows_of_a_text_with_control_characters) {
  EXPECT_EQ(TextField::field(std::string("a\0b\nc", 5)).text(), "abc");
}

TEST(TextField, a_label_keeps_its_line_breaks) {
  const TextField label = TextField::wrappingLabel("one\ntwo");
  EXPECT_EQ(label.text(), "one\ntwo");
  const auto& widget = wrapping(label);
  EXPECT_EQ(widget.heightForWidth(500),
            2 * wrapping(TextField::wrappingLabel("x")).heightForWidth(500));
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

TEST(TextField, a_label_wraps_at_words) {
  const auto& label = wrapping(TextField::wrappingLabel("some words to wrap at"));
  const int line = label.heightForWidth(1000);
  EXPECT_EQ(label.heightForWidth(label.sizeHint().width()), line);
  EXPECT_EQ(label.heightForWidth(label.sizeHint().width() * 2 / 3), 2 * line);
}

TEST(TextField, a_label_wraps_inside_a_word_that_is_longer_than_a_line) {
  const auto& label = wrapping(TextField::wrappingLabel(std::string(100, 'w')));
  EXPECT_GE(label.heightForWidth(label.sizeHint().width() / 3), 3 * label.heightForWidth(100000));
  EXPECT_EQ(label.minimumSizeHint().width(), 0);
}

TEST(TextField, a_label_shows_no_more_than_its_lines) {
  const TextField text = TextField::wrappingLabel("1\n2\n3\n4");
  text.setMaximumNumberOfLines(2);
  const auto& label = wrapping(text);
  EXPECT_EQ(label.heightForWidth(100),
            2 * wrapping(TextField::wrappingLabel("1")).heightForWidth(9));
  EXPECT_EQ(text.text(), "1\n2\n3\n4");
}

TEST(TextField, a_label_of_ten_thousand_characters_can_be_shown) {
  const auto& label = wrapping(TextField::wrappingLabel(std::string(10000, 'w')));
  EXPECT_GT(label.heightForWidth(500), 500);
  EXPECT_FALSE(widgetOf(TextField::wrappingLabel(std::string(10000, 'w'))).grab().isNull());
}

TEST(TextField, the_placeholder_is_no_text) {
  const TextField field = TextField::field("");
  field.setPlaceholder("Preset name");
  EXPECT_EQ(field.text(), "");
}

}  // namespace
}  // namespace vorrin
