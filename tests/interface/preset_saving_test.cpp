#include "bridge/program_engine.h"
#include "presets_test.h"

namespace vorrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PresetSaving = PresetsTest;

const std::string refusal = "Enter a name (1–80 characters) and valid, distinct macro settings.";

TEST_F(PresetSaving, without_any_the_list_says_so_and_cannot_be_opened) {
  EXPECT_THAT(list(), ElementsAre("No saved presets"));
  EXPECT_FALSE(app->presetList.isEnabled());
}

TEST_F(PresetSaving, without_any_load_rename_and_delete_say_what_to_do) {
  click(button("Load"));
  EXPECT_EQ(app->presetNotice.text(), "Choose a saved preset first.");
  click(button("Rename"));
  EXPECT_EQ(app->presetNotice.text(), "Select a saved preset first.");
  click(button("Load"));
  click(button("Delete"));
  EXPECT_EQ(app->presetNotice.text(), "Select a saved preset first.");
  EXPECT_FALSE(hasSheet());
}

TEST_F(PresetSaving, names_are_listed_in_their_natural_order) {
  for (const char* name : {"b", "A", "a10", "a9"}) savePreset(name, preset());
  EXPECT_THAT(list(), ElementsAre("A", "a9", "a10", "b"));
  EXPECT_TRUE(app->presetList.isEnabled());
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), "A");
}

TEST_F(PresetSaving, saving_trims_the_name_and_selects_it) {
  savePreset("Day", preset());
  save("  Night ");
  EXPECT_EQ(app->presetNotice.text(), "Saved “Night”.");
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), "Night");
  EXPECT_THAT(app->presetStore().all().value, ElementsAre(named("Day"), named("Night")));
  EXPECT_EQ(app->presetStore().all().value.at("Night"), preset());
}

TEST_F(PresetSaving, saving_neither_stops_macros_nor_touches_the_current_settings) {
  click(app->buttons[0]);
  type(app->presetName, "Night");
  EXPECT_TRUE(engine.running[0]);
  click(button("Save preset"));
  EXPECT_TRUE(engine.running[0]);
  EXPECT_EQ(app->saveNotice.text(), "Settings save automatically.");
  EXPECT_EQ(stored("interval0"), std::nullopt);
}

TEST_F(PresetSaving, a_name_that_is_blank_or_too_long_is_refused) {
  for (const std::string& name : {std::string(), std::string("   "), std::string(81, 'x')}) {
    save(name);
    EXPECT_EQ(app->presetNotice.text(), refusal);
    EXPECT_THAT(app->presetStore().all().value, IsEmpty());
    app->presetNotice.setText("");
  }
}

TEST_F(PresetSaving, a_name_of_80_characters_is_accepted_however_many_code_points_they_take) {
  std::string families;
  for (int i = 0; i < 80; ++i) families += "👩‍👩‍👧";
  save(families);
  EXPECT_EQ(app->presetNotice.text(), "Saved “" + families + "”.");
}

TEST_F(PresetSaving, invalid_settings_are_not_saved) {
  type(app->fields[0], "0");
  save("Night");
  EXPECT_EQ(app->presetNotice.text(), refusal);
  EXPECT_THAT(app->presetStore().all().value, IsEmpty());
}

TEST_F(PresetSaving, saving_under_a_name_in_use_asks_first) {
  savePreset("Night", other());
  save("Night");
  EXPECT_THAT(driver::sheetTexts(app->window),
              ElementsAre("Replace “Night” ?", "This replaces the existing saved preset."));
  EXPECT_THAT(driver::sheetButtons(app->window), ElementsAre("Replace", "Cancel"));
  EXPECT_EQ(driver::defaultSheetButton(app->window), "Replace");
  EXPECT_EQ(app->presetStore().all().value.at("Night"), other());
  EXPECT_EQ(app->presetNotice.text(), "");
}

TEST_F(PresetSaving, replace_replaces) {
  savePreset("Night", other());
  save("Night");
  answer("Replace");
  EXPECT_EQ(app->presetStore().all().value.at("Night"), preset());
  EXPECT_EQ(app->presetNotice.text(), "Saved “Night”.");
  EXPECT_FALSE(hasSheet());
}

TEST_F(PresetSaving, cancelling_a_replacement_leaves_everything_as_it_was) {
  savePreset("Night", other());
  save("Night");
  answer("Cancel");
  EXPECT_EQ(app->presetStore().all().value.at("Night"), other());
  EXPECT_EQ(app->presetNotice.text(), "");
  EXPECT_FALSE(hasSheet());
}

TEST_F(PresetSaving, a_replacement_stores_what_was_shown_when_the_question_came) {
  savePreset("Night", other());
  const Preset asked = preset();
  save("Night");
  app->output.selectItem(8);
  app->presetName.setText("Elsewhere");
  answer("Replace");
  EXPECT_EQ(app->presetStore().all().value.at("Night"), asked);
  EXPECT_EQ(app->presetName.text(), "Night");
}

TEST_F(PresetSaving, the_questions_can_be_answered_by_keyboard) {
  savePreset("Night", other());
  save("Night");
  answerWith(Key::escape);
  EXPECT_FALSE(hasSheet());
  EXPECT_EQ(app->presetStore().all().value.at("Night"), other());
  click(button("Save preset"));
  answerWith(Key::enter);
  EXPECT_FALSE(hasSheet());
  EXPECT_EQ(app->presetStore().all().value.at("Night"), preset());
}

}  // namespace
}  // namespace vorrin
