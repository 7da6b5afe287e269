#include "interface_test.h"

// What users may put into a field.

namespace vorrin {
namespace {

using FieldInput = InterfaceTest;

TEST_F(FieldInput, ten_thousand_characters_change_no_layout_and_are_refused) {
  const std::string longText(10000, '7');
  const double width = app->presetName.bounds().width;
  type(app->presetName, longText);
  EXPECT_EQ(app->presetName.text(), longText);
  click(button("Save preset"));
  EXPECT_EQ(app->presetNotice.text(),
            "Enter a name (1–80 characters) and valid, distinct macro settings.");
  EXPECT_EQ(app->presetName.bounds().width, width);
  type(app->fields[0], longText);
  EXPECT_EQ(app->fields[0].text(), longText);
  EXPECT_FALSE(app->settingsValid);
}

TEST_F(FieldInput, text_from_right_to_left_is_kept_as_it_is) {
  const std::string hebrew = "לילה 12 טוב";
  type(app->presetName, hebrew);
  EXPECT_EQ(app->presetName.text(), hebrew);
  click(button("Save preset"));
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), hebrew);
  EXPECT_EQ(app->presetNotice.text(), "Saved “" + hebrew + "”.");
}

TEST_F(FieldInput, marks_of_writing_direction_stay_in_a_name) {
  const std::string name = "a\u202Eb\u200F";
  type(app->presetName, name);
  EXPECT_EQ(app->presetName.text(), name);
}

}  // namespace
}  // namespace vorrin
