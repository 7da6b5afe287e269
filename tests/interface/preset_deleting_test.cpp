#include "bridge/program_engine.h"
#include "presets_test.h"

namespace vorrin {
namespace {

using testing::ElementsAre;

using PresetDeleting = PresetsTest;

TEST_F(PresetDeleting, deleting_asks_first_and_the_safe_button_is_the_default) {
  savePreset("Night", other());
  click(button("Delete"));
  EXPECT_THAT(
      driver::sheetTexts(app->window),
      ElementsAre("Delete “Night”?",
                  "This removes the saved preset. Your current macro settings stay unchanged."));
  EXPECT_THAT(driver::sheetButtons(app->window), ElementsAre("Cancel", "Delete"));
  EXPECT_EQ(driver::defaultSheetButton(app->window), "Cancel");
}

TEST_F(PresetDeleting, enter_and_escape_do_not_delete) {
  savePreset("Night", other());
  for (const Key key : {Key::enter, Key::escape}) {
    click(button("Delete"));
    answerWith(key);
    EXPECT_THAT(app->presetStore().all().value, ElementsAre(named("Night")));
  }
}

TEST_F(PresetDeleting, deleting_the_preset_in_the_name_field_empties_the_field) {
  savePreset("Day", preset());
  save("Night");
  click(button("Delete"));
  answer("Delete");
  EXPECT_EQ(app->presetName.text(), "");
  EXPECT_EQ(app->presetNotice.text(), "Deleted “Night”.");
  EXPECT_THAT(list(), ElementsAre("Day"));
}

TEST_F(PresetDeleting, deleting_another_preset_leaves_the_name_field) {
  savePreset("Day", preset());
  save("Night");
  choose(app->presetList, 0);
  click(button("Delete"));
  answer("Delete");
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetNotice.text(), "Deleted “Day”.");
}

TEST_F(PresetDeleting, after_the_last_one_is_deleted_the_list_says_so) {
  savePreset("Night", other());
  click(button("Delete"));
  answer("Delete");
  EXPECT_THAT(list(), ElementsAre("No saved presets"));
  EXPECT_FALSE(app->presetList.isEnabled());
}

TEST_F(PresetDeleting, a_preset_that_is_gone_when_the_answer_comes_cannot_be_deleted) {
  savePreset("Night", other());
  click(button("Delete"));
  ASSERT_TRUE(PresetStore(UserDefaults::standard()).remove("Night"));
  answer("Delete");
  EXPECT_EQ(app->presetNotice.text(), "Could not delete preset.");
}

TEST_F(PresetDeleting, while_a_question_is_open_no_second_one_comes) {
  savePreset("Night", other());
  click(button("Delete"));
  app->renamePreset();
  EXPECT_EQ(driver::sheetTexts(app->window).front(), "Delete “Night”?");
  answer("Cancel");
  EXPECT_FALSE(hasSheet());
}

TEST_F(PresetDeleting, macros_go_on_while_a_question_is_open) {
  savePreset("Night", other());
  click(app->buttons[1]);
  int actions = 0;
  engine.emit = [&actions](int) { ++actions; };
  click(button("Delete"));
  EXPECT_TRUE(waitFor([&actions] { return actions > 3; }));
  answer("Cancel");
}

}  // namespace
}  // namespace vorrin
