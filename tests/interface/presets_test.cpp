#include <QLineEdit>
#include <QTest>
#include <filesystem>
#include <fstream>

#include "bridge/program_engine.h"
#include "interface_test.h"

namespace vorrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;

const std::string refusal = "Enter a name (1–80 characters) and valid, distinct macro settings.";

class Presets : public InterfaceTest {
 protected:
  Preset preset() { return *app->currentPreset(); }

  void save(const std::string& name) {
    type(app->presetName, name);
    click(button("Save preset"));
  }

  [[nodiscard]] std::vector<std::string> list() const {
    std::vector<std::string> titles;
    const int selected = app->presetList.indexOfSelectedItem();
    for (int i = 0; i < app->presetList.numberOfItems(); ++i) {
      app->presetList.selectItem(i);
      titles.push_back(app->presetList.titleOfSelectedItem());
    }
    app->presetList.selectItem(selected);
    return titles;
  }

  [[nodiscard]] QLineEdit& nameInSheet() const { return *sheet()->findChild<QLineEdit*>(); }

  /// A preset that differs from the start values in everything.
  static Preset other() {
    return {.intervals = {2, 0.05}, .keys = {97, 98}, .digit = 4, .enabled = {false, true}};
  }
};

TEST_F(Presets, without_any_the_list_says_so_and_cannot_be_opened) {
  EXPECT_THAT(list(), ElementsAre("No saved presets"));
  EXPECT_FALSE(app->presetList.isEnabled());
}

TEST_F(Presets, without_any_load_rename_and_delete_say_what_to_do) {
  click(button("Load"));
  EXPECT_EQ(app->presetNotice.text(), "Choose a saved preset first.");
  click(button("Rename"));
  EXPECT_EQ(app->presetNotice.text(), "Select a saved preset first.");
  click(button("Load"));
  click(button("Delete"));
  EXPECT_EQ(app->presetNotice.text(), "Select a saved preset first.");
  EXPECT_EQ(sheet(), nullptr);
}

TEST_F(Presets, names_are_listed_in_their_natural_order) {
  for (const char* name : {"b", "A", "a10", "a9"}) savePreset(name, preset());
  EXPECT_THAT(list(), ElementsAre("A", "a9", "a10", "b"));
  EXPECT_TRUE(app->presetList.isEnabled());
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), "A");
}

TEST_F(Presets, saving_trims_the_name_and_selects_it) {
  savePreset("Day", preset());
  save("  Night ");
  EXPECT_EQ(app->presetNotice.text(), "Saved “Night”.");
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), "Night");
  EXPECT_THAT(app->presetStore().all(), ElementsAre(Key("Day"), Key("Night")));
  EXPECT_EQ(app->presetStore().all().at("Night"), preset());
}

TEST_F(Presets, saving_neither_stops_macros_nor_touches_the_current_settings) {
  click(app->buttons[0]);
  type(app->presetName, "Night");
  EXPECT_TRUE(engine.running[0]);
  click(button("Save preset"));
  EXPECT_TRUE(engine.running[0]);
  EXPECT_EQ(app->saveNotice.text(), "Settings save automatically.");
  EXPECT_EQ(stored("interval0"), std::nullopt);
}

TEST_F(Presets, a_name_that_is_blank_or_too_long_is_refused) {
  for (const std::string& name : {std::string(), std::string("   "), std::string(81, 'x')}) {
    save(name);
    EXPECT_EQ(app->presetNotice.text(), refusal);
    EXPECT_THAT(app->presetStore().all(), IsEmpty());
    app->presetNotice.setText("");
  }
}

TEST_F(Presets, a_name_of_80_characters_is_accepted_however_many_code_points_they_take) {
  std::string families;
  for (int i = 0; i < 80; ++i) families += "👩‍👩‍👧";
  save(families);
  EXPECT_EQ(app->presetNotice.text(), "Saved “" + families + "”.");
}

TEST_F(Presets, invalid_settings_are_not_saved) {
  type(app->fields[0], "0");
  save("Night");
  EXPECT_EQ(app->presetNotice.text(), refusal);
  EXPECT_THAT(app->presetStore().all(), IsEmpty());
}

TEST_F(Presets, saving_under_a_name_in_use_asks_first) {
  savePreset("Night", other());
  save("Night");
  EXPECT_THAT(sheetTexts(),
              ElementsAre("Replace “Night” ?", "This replaces the existing saved preset."));
  EXPECT_THAT(sheetButtons(), ElementsAre("Replace", "Cancel"));
  EXPECT_TRUE(sheetButton("Replace")->isDefault());
  EXPECT_EQ(app->presetStore().all().at("Night"), other());
  EXPECT_EQ(app->presetNotice.text(), "");
}

TEST_F(Presets, replace_replaces) {
  savePreset("Night", other());
  save("Night");
  answer("Replace");
  EXPECT_EQ(app->presetStore().all().at("Night"), preset());
  EXPECT_EQ(app->presetNotice.text(), "Saved “Night”.");
  EXPECT_EQ(sheet(), nullptr);
}

TEST_F(Presets, cancelling_a_replacement_leaves_everything_as_it_was) {
  savePreset("Night", other());
  save("Night");
  answer("Cancel");
  EXPECT_EQ(app->presetStore().all().at("Night"), other());
  EXPECT_EQ(app->presetNotice.text(), "");
  EXPECT_EQ(sheet(), nullptr);
}

TEST_F(Presets, a_replacement_stores_what_was_shown_when_the_question_came) {
  savePreset("Night", other());
  const Preset asked = preset();
  save("Night");
  app->output.selectItem(8);
  app->presetName.setText("Elsewhere");
  answer("Replace");
  EXPECT_EQ(app->presetStore().all().at("Night"), asked);
  EXPECT_EQ(app->presetName.text(), "Night");
}

TEST_F(Presets, the_questions_can_be_answered_by_keyboard) {
  savePreset("Night", other());
  save("Night");
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
  press(Qt::Key_Escape);
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_EQ(app->presetStore().all().at("Night"), other());
  click(button("Save preset"));
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
  press(Qt::Key_Return);
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_EQ(app->presetStore().all().at("Night"), preset());
}

TEST_F(Presets, loading_fills_every_control_and_stops_the_macros) {
  savePreset("Night", other());
  click(app->buttons[1]);
  ASSERT_TRUE(engine.running[1]);
  click(button("Load"));
  EXPECT_FALSE(engine.running[1]);
  EXPECT_EQ(app->fields[0].text(), "2.0");
  EXPECT_EQ(app->fields[1].text(), "0.05");
  EXPECT_EQ(app->shortcuts[0].titleOfSelectedItem(), "F6");
  EXPECT_EQ(app->shortcuts[1].titleOfSelectedItem(), "F7");
  EXPECT_FALSE(app->checks[0].isOn());
  EXPECT_TRUE(app->checks[1].isOn());
  EXPECT_EQ(app->output.indexOfSelectedItem(), 4);
}

TEST_F(Presets, loading_makes_the_preset_the_current_settings) {
  savePreset("Night", other());
  click(button("Load"));
  EXPECT_EQ(app->currentPreset(), other());
  EXPECT_EQ(engine.keys[0], 97);
  EXPECT_EQ(engine.digit, 4);
  EXPECT_FALSE(engine.enabled[0]);
  EXPECT_EQ(stored("interval0"), DefaultsObject(2.0));
  EXPECT_EQ(stored("enabled0"), DefaultsObject(false));
}

TEST_F(Presets, loading_says_so_in_both_notices_and_the_name) {
  savePreset("Night", other());
  click(button("Load"));
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetNotice.text(), "Loaded “Night”. Both macros are OFF.");
  EXPECT_EQ(app->saveNotice.text(), "Saved automatically · macros stopped · presets unchanged");
}

TEST_F(Presets, loading_mends_a_draft_that_was_refused) {
  savePreset("Night", other());
  type(app->fields[0], "abc");
  ASSERT_FALSE(app->settingsValid);
  click(button("Load"));
  EXPECT_TRUE(app->settingsValid);
}

TEST_F(Presets, a_preset_that_another_process_deleted_is_not_loaded) {
  savePreset("Night", other());
  ASSERT_TRUE(PresetStore(UserDefaults::standard()).remove("Night"));
  click(button("Load"));
  EXPECT_EQ(app->presetNotice.text(), "Choose a saved preset first.");
}

TEST_F(Presets, renaming_asks_for_the_new_name_with_the_old_one_selected) {
  savePreset("Night", other());
  click(button("Rename"));
  EXPECT_THAT(sheetTexts(), ElementsAre("Rename preset", "Enter a unique name (1–80 characters)."));
  EXPECT_THAT(sheetButtons(), ElementsAre("Rename", "Cancel"));
  EXPECT_EQ(nameInSheet().text(), "Night");
  EXPECT_EQ(nameInSheet().selectedText(), "Night");
  EXPECT_EQ(nameInSheet().size(), QSize(300, 24));
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
  EXPECT_TRUE(nameInSheet().hasFocus());
}

TEST_F(Presets, a_new_name_can_be_typed_at_once_and_confirmed_with_enter) {
  savePreset("Night", other());
  click(button("Rename"));
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
  QTest::keyClicks(&nameInSheet(), " Day ");
  press(Qt::Key_Return);
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_THAT(app->presetStore().all(), ElementsAre(Key("Day")));
  EXPECT_EQ(app->presetStore().all().at("Day"), other());
  EXPECT_EQ(app->presetNotice.text(), "Renamed to “Day”.");
  EXPECT_EQ(app->presetName.text(), "Day");
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), "Day");
}

TEST_F(Presets, a_name_that_is_taken_blank_or_too_long_is_refused) {
  savePreset("Day", preset());
  savePreset("Night", other());
  for (const std::string& name : {std::string("Day"), std::string(" "), std::string(81, 'x')}) {
    app->presetList.selectItem("Night");
    app->presetNotice.setText("");
    click(button("Rename"));
    nameInSheet().setText(QString::fromStdString(name));
    answer("Rename");
    EXPECT_EQ(app->presetNotice.text(), "Name is empty, too long, or already exists.");
    EXPECT_EQ(app->presetStore().all().at("Night"), other());
    EXPECT_EQ(app->presetStore().all().at("Day"), preset());
  }
}

TEST_F(Presets, renaming_to_the_same_name_succeeds) {
  savePreset("Night", other());
  click(button("Rename"));
  answer("Rename");
  EXPECT_EQ(app->presetNotice.text(), "Renamed to “Night”.");
}

TEST_F(Presets, cancelling_a_renaming_leaves_everything_as_it_was) {
  savePreset("Night", other());
  click(button("Rename"));
  nameInSheet().setText("Day");
  answer("Cancel");
  EXPECT_THAT(app->presetStore().all(), ElementsAre(Key("Night")));
  EXPECT_EQ(app->presetNotice.text(), "");
  EXPECT_EQ(app->presetName.text(), "");
}

TEST_F(Presets, deleting_asks_first_and_the_safe_button_is_the_default) {
  savePreset("Night", other());
  click(button("Delete"));
  EXPECT_THAT(
      sheetTexts(),
      ElementsAre("Delete “Night”?",
                  "This removes the saved preset. Your current macro settings stay unchanged."));
  EXPECT_THAT(sheetButtons(), ElementsAre("Cancel", "Delete"));
  EXPECT_TRUE(sheetButton("Cancel")->isDefault());
  EXPECT_FALSE(sheetButton("Delete")->isDefault());
}

TEST_F(Presets, enter_and_escape_do_not_delete) {
  savePreset("Night", other());
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Space}) {
    click(button("Delete"));
    ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
    press(key);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_THAT(app->presetStore().all(), ElementsAre(Key("Night")));
  }
}

TEST_F(Presets, delete_can_be_reached_by_keyboard) {
  savePreset("Night", other());
  click(button("Delete"));
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
  press(Qt::Key_Tab);
  EXPECT_TRUE(sheetButton("Delete")->hasFocus());
  press(Qt::Key_Return);
  EXPECT_THAT(app->presetStore().all(), IsEmpty());
}

TEST_F(Presets, deleting_the_preset_in_the_name_field_empties_the_field) {
  savePreset("Day", preset());
  save("Night");
  click(button("Delete"));
  answer("Delete");
  EXPECT_EQ(app->presetName.text(), "");
  EXPECT_EQ(app->presetNotice.text(), "Deleted “Night”.");
  EXPECT_THAT(list(), ElementsAre("Day"));
}

TEST_F(Presets, deleting_another_preset_leaves_the_name_field) {
  savePreset("Day", preset());
  save("Night");
  choose(app->presetList, 0);
  click(button("Delete"));
  answer("Delete");
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetNotice.text(), "Deleted “Day”.");
}

TEST_F(Presets, after_the_last_one_is_deleted_the_list_says_so) {
  savePreset("Night", other());
  click(button("Delete"));
  answer("Delete");
  EXPECT_THAT(list(), ElementsAre("No saved presets"));
  EXPECT_FALSE(app->presetList.isEnabled());
}

TEST_F(Presets, a_preset_that_is_gone_when_the_answer_comes_cannot_be_deleted) {
  savePreset("Night", other());
  click(button("Delete"));
  ASSERT_TRUE(PresetStore(UserDefaults::standard()).remove("Night"));
  answer("Delete");
  EXPECT_EQ(app->presetNotice.text(), "Could not delete preset.");
}

TEST_F(Presets, when_nothing_can_be_stored_saving_says_so) {
  std::ofstream(home.path / ".config") << "in the way of the directory";
  launch();
  save("Night");
  EXPECT_EQ(app->presetNotice.text(), "Could not save preset.");
}

TEST_F(Presets, while_a_question_is_open_the_window_takes_no_input) {
  savePreset("Night", other());
  click(button("Delete"));
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
  click(app->buttons[0]);
  click(app->checks[0]);
  EXPECT_FALSE(engine.running[0]);
  EXPECT_TRUE(app->checks[0].isOn());
  answer("Cancel");
  click(app->buttons[0]);
  EXPECT_TRUE(engine.running[0]);
}

TEST_F(Presets, while_a_question_is_open_no_second_one_comes) {
  savePreset("Night", other());
  click(button("Delete"));
  const Sheet* first = sheet();
  app->renamePreset();
  EXPECT_EQ(sheet(), first);
  answer("Cancel");
  EXPECT_EQ(sheet(), nullptr);
}

TEST_F(Presets, macros_go_on_while_a_question_is_open) {
  savePreset("Night", other());
  click(app->buttons[1]);
  int actions = 0;
  engine.emit = [&actions](int) { ++actions; };
  click(button("Delete"));
  EXPECT_TRUE(waitFor([&actions] { return actions > 3; }));
  answer("Cancel");
}

TEST_F(Presets, a_long_name_wraps_in_the_question) {
  savePreset(std::string(80, 'W'), other());
  click(button("Delete"));
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet()));
  EXPECT_LE(sheet()->width(), 580);
}

}  // namespace
}  // namespace vorrin
