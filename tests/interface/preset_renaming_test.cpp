#include "presets_test.h"

namespace vorrin {
namespace {

using testing::ElementsAre;

using PresetRenaming = PresetsTest;

TEST_F(PresetRenaming, renaming_asks_for_the_new_name_with_the_old_one_selected) {
  savePreset("Night", other());
  click(button("Rename"));
  EXPECT_THAT(driver::sheetTexts(app->window),
              ElementsAre("Rename preset", "Enter a unique name (1–80 characters)."));
  EXPECT_THAT(driver::sheetButtons(app->window), ElementsAre("Rename", "Cancel"));
  const TextField name = nameInSheet();
  EXPECT_EQ(name.text(), "Night");
  EXPECT_EQ(driver::selectedText(name), "Night");
  EXPECT_EQ(name.bounds().width, 300);
  EXPECT_EQ(name.bounds().height, 24);
}

TEST_F(PresetRenaming, a_new_name_can_be_typed_at_once_and_confirmed_with_enter) {
  savePreset("Night", other());
  click(button("Rename"));
  EXPECT_EQ(nameInSheet().text(), "Night");
  enter(" Day ");
  answerWith(Key::enter);
  EXPECT_FALSE(hasSheet());
  EXPECT_THAT(app->presetStore().all().value, ElementsAre(named("Day")));
  EXPECT_EQ(app->presetStore().all().value.at("Day"), other());
  EXPECT_EQ(app->presetNotice.text(), "Renamed to “Day”.");
  EXPECT_EQ(app->presetName.text(), "Day");
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), "Day");
}

TEST_F(PresetRenaming, a_name_that_is_taken_blank_or_too_long_is_refused) {
  savePreset("Day", preset());
  savePreset("Night", other());
  for (const std::string& name : {std::string("Day"), std::string(" "), std::string(81, 'x')}) {
    app->presetList.selectItem("Night");
    app->presetNotice.setText("");
    click(button("Rename"));
    nameInSheet().setText(name);
    answer("Rename");
    EXPECT_EQ(app->presetNotice.text(), "Name is empty, too long, or already exists.");
    EXPECT_EQ(app->presetStore().all().value.at("Night"), other());
    EXPECT_EQ(app->presetStore().all().value.at("Day"), preset());
  }
}

TEST_F(PresetRenaming, renaming_to_the_same_name_succeeds) {
  savePreset("Night", other());
  click(button("Rename"));
  answer("Rename");
  EXPECT_EQ(app->presetNotice.text(), "Renamed to “Night”.");
}

TEST_F(PresetRenaming, cancelling_a_renaming_leaves_everything_as_it_was) {
  savePreset("Night", other());
  click(button("Rename"));
  nameInSheet().setText("Day");
  answer("Cancel");
  EXPECT_THAT(app->presetStore().all().value, ElementsAre(named("Night")));
  EXPECT_EQ(app->presetNotice.text(), "");
  EXPECT_EQ(app->presetName.text(), "");
}

}  // namespace
}  // namespace vorrin
