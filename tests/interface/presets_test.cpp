#include "presets_test.h"

#include "bridge/program_engine.h"

namespace vorrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string refusal = "Enter a name (1–80 characters) and valid, distinct macro settings.";

using PresetSaving = PresetsTest;

TEST_F(PresetSaving, without_any_the_list_says_so_and_the_buttons_say_what_to_do) {
  EXPECT_THAT(list(), ElementsAre("No saved presets"));
  EXPECT_FALSE(app->presetList.isEnabled());
  for (const char* title : {"Rename", "Delete"}) {
    click(button("Load"));
    EXPECT_EQ(app->presetNotice.text(), "Choose a saved preset first.");
    click(button(title));
    EXPECT_EQ(app->presetNotice.text(), "Select a saved preset first.");
  }
  EXPECT_FALSE(hasSheet());
}

TEST_F(PresetSaving, names_are_listed_in_their_natural_order) {
  for (const char* name : {"b", "A", "a10", "a9"}) savePreset(name, preset());
  EXPECT_THAT(list(), ElementsAre("A", "a9", "a10", "b"));
  EXPECT_TRUE(app->presetList.isEnabled());
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), "A");
}

TEST_F(PresetSaving, names_are_shown_as_they_were_typed) {
  for (const std::string& name : {std::string("a & b"), std::string("A"), std::string("a"),
                                  std::string("לילה 12\u202E טוב")}) {
    save(name);
    EXPECT_EQ(app->presetName.text(), name);
    EXPECT_EQ(app->presetList.titleOfSelectedItem(), name);
    EXPECT_EQ(app->presetNotice.text(), "Saved “" + name + "”.");
  }
}

TEST_F(PresetSaving, ten_thousand_characters_change_no_layout_and_are_refused) {
  const std::string longText(10'000, '7');
  const double width = app->presetName.bounds().width;
  for (const TextField& field : {app->presetName, app->fields[0]}) {
    type(field, longText);
    EXPECT_EQ(field.text(), longText);
  }
  EXPECT_FALSE(app->settingsValid);
  click(button("Save preset"));
  EXPECT_EQ(app->presetNotice.text(), refusal);
  EXPECT_EQ(app->presetName.bounds().width, width);
}

TEST_F(PresetSaving, saving_trims_the_name_and_selects_it) {
  savePreset("Day", other());
  save("  Night ");
  EXPECT_EQ(app->presetNotice.text(), "Saved “Night”.");
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), "Night");
  EXPECT_THAT(presets(), ElementsAre(entry("Day", other()), entry("Night", preset())));
}

TEST_F(PresetSaving, saving_neither_stops_macros_nor_touches_the_current_settings) {
  click(app->buttons[0]);
  save("Night");
  EXPECT_TRUE(engine.running[0]);
  EXPECT_EQ(app->saveNotice.text(), "Settings save automatically.");
  EXPECT_EQ(stored("interval0"), std::nullopt);
}

TEST_F(PresetSaving, a_name_that_is_blank_or_too_long_is_refused_and_so_are_invalid_settings) {
  for (const std::string& name : {std::string(), std::string("   "), std::string(81, 'x')}) {
    app->presetNotice.setText("");
    save(name);
    EXPECT_EQ(app->presetNotice.text(), refusal);
  }
  app->presetNotice.setText("");
  type(app->fields[0], "0");
  save("Night");
  EXPECT_EQ(app->presetNotice.text(), refusal);
  EXPECT_THAT(presets(), IsEmpty());
}

TEST_F(PresetSaving, saving_under_a_name_in_use_asks_first) {
  savePreset("Night", other());
  save("Night");
  EXPECT_THAT(driver::sheetTexts(app->window),
              ElementsAre("Replace “Night” ?", "This replaces the existing saved preset."));
  EXPECT_THAT(driver::sheetButtons(app->window), ElementsAre("Replace", "Cancel"));
  EXPECT_EQ(driver::defaultSheetButton(app->window), "Replace");
  answerWith(Key::escape);
  EXPECT_THAT(presets(), ElementsAre(entry("Night", other())));
  EXPECT_EQ(app->presetNotice.text(), "");
}

TEST_F(PresetSaving, a_replacement_stores_what_was_shown_when_the_question_came) {
  savePreset("Night", other());
  const Preset asked = preset();
  save("Night");
  app->output.selectItem(8);
  app->presetName.setText("Elsewhere");
  answerWith(Key::enter);
  EXPECT_THAT(presets(), ElementsAre(entry("Night", asked)));
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetNotice.text(), "Saved “Night”.");
}

using PresetLoading = PresetsTest;

TEST_F(PresetLoading, a_preset_loaded_fills_every_control_stops_the_macros_and_is_stored) {
  savePreset("Night", other());
  click(app->buttons[1]);
  type(app->fields[0], "abc");
  click(button("Load"));
  EXPECT_FALSE(engine.running[1]);
  EXPECT_TRUE(app->settingsValid);
  EXPECT_EQ(app->fields[0].text(), "2.0");
  EXPECT_EQ(app->fields[1].text(), "0.05");
  EXPECT_EQ(app->currentPreset(), other());
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetNotice.text(), "Loaded “Night”. Both macros are OFF.");
  EXPECT_EQ(engine.keys[0], 97);
  EXPECT_EQ(engine.digit, 4);
  EXPECT_FALSE(engine.enabled[0]);
  EXPECT_EQ(stored("interval0"), DefaultsObject(2.0));
  EXPECT_EQ(stored("enabled0"), DefaultsObject(false));
  EXPECT_EQ(app->saveNotice.text(), "Saved automatically · macros stopped · presets unchanged");
}

TEST_F(PresetLoading, a_preset_that_another_process_deleted_is_not_loaded) {
  savePreset("Night", other());
  ASSERT_TRUE(PresetStore(UserDefaults::standard()).remove("Night"));
  click(button("Load"));
  EXPECT_EQ(app->presetNotice.text(), "Choose a saved preset first.");
}

using PresetRenaming = PresetsTest;

TEST_F(PresetRenaming,
       renaming_asks_for_a_new_name_that_can_be_typed_at_once_and_confirmed_with_enter) {
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
  enter(" Day ");
  answerWith(Key::enter);
  EXPECT_THAT(presets(), ElementsAre(entry("Day", other())));
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
  }
  EXPECT_THAT(presets(), ElementsAre(entry("Day", preset()), entry("Night", other())));
}

TEST_F(PresetRenaming, cancelling_a_renaming_leaves_everything_as_it_was) {
  savePreset("Night", other());
  click(button("Rename"));
  nameInSheet().setText("Day");
  answer("Cancel");
  EXPECT_THAT(presets(), ElementsAre(entry("Night", other())));
  EXPECT_EQ(app->presetNotice.text(), "");
  EXPECT_EQ(app->presetName.text(), "");
}

using PresetDeleting = PresetsTest;

TEST_F(PresetDeleting, deleting_asks_first_and_neither_enter_nor_escape_deletes) {
  savePreset("Night", other());
  for (const Key key : {Key::enter, Key::escape}) {
    click(button("Delete"));
    EXPECT_THAT(
        driver::sheetTexts(app->window),
        ElementsAre("Delete “Night”?",
                    "This removes the saved preset. Your current macro settings stay unchanged."));
    EXPECT_THAT(driver::sheetButtons(app->window), ElementsAre("Cancel", "Delete"));
    EXPECT_EQ(driver::defaultSheetButton(app->window), "Cancel");
    answerWith(key);
    EXPECT_THAT(presets(), ElementsAre(entry("Night", other())));
  }
}

TEST_F(PresetDeleting, deleting_empties_the_name_field_of_that_preset_only_and_ends_with_a_hint) {
  savePreset("Day", preset());
  save("Night");
  choose(app->presetList, 0);
  click(button("Delete"));
  answer("Delete");
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetNotice.text(), "Deleted “Day”.");
  EXPECT_THAT(list(), ElementsAre("Night"));
  click(button("Delete"));
  answer("Delete");
  EXPECT_EQ(app->presetName.text(), "");
  EXPECT_EQ(app->presetNotice.text(), "Deleted “Night”.");
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

TEST_F(PresetDeleting, while_a_question_is_open_no_second_one_comes_and_macros_go_on) {
  savePreset("Night", other());
  click(app->buttons[1]);
  int actions = 0;
  engine.emit = [&actions](int) { ++actions; };
  click(button("Delete"));
  app->renamePreset();
  EXPECT_EQ(driver::sheetTexts(app->window).front(), "Delete “Night”?");
  EXPECT_TRUE(waitFor([&actions] { return actions > 3; }));
  answer("Cancel");
  EXPECT_FALSE(hasSheet());
}

}  // namespace
}  // namespace vorrin
