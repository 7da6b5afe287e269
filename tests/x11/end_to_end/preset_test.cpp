#include <algorithm>

#include "end_to_end_test.h"
#include "input_watch.h"
#include "panel.h"
#include "platform/user_defaults.h"
#include "settings/preset_store.h"
#include "settings/settings_persistence.h"

namespace vorrin::x11_tests {
namespace {

// The preset panel of the real window, worked by the keyboard.
struct PresetTest : EndToEndTest {
  Panel panel{user};
  PresetStore presets{UserDefaults::standard()};
  const Preset night{{0.5, 0.25}, {keys::f6, keys::f7}, 7, {true, false}};

  /// Starts with these names saved, all with the values of `night`, and the window in front.
  void startWith(const std::vector<std::string>& names) {
    for (const std::string& name : names) ASSERT_TRUE(presets.save(night, name));
    panel.setHasPresets(!names.empty());
    start();
    showVorrin();
  }

  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const auto& [name, preset] : presets.all().value) all.push_back(name);
    return all;
  }

  bool waitForNames(const std::vector<std::string>& expected) {
    return waitUntil([&] { return names() == expected; });
  }

  /// Waits for a sheet over the window, or for its end.
  bool waitForSheet(bool shown) {
    return waitUntil([&] {
      const bool isShown = windows.active() != vorrinWindow() && windows.active() != 0;
      return isShown == shown;
    });
  }
};

TEST_F(PresetTest, save_stores_the_current_settings_under_the_name) {
  startWith({});
  panel.enter(Control::presetName, " night ");
  panel.push(Control::savePreset);
  ASSERT_TRUE(waitForNames({"night"}));
  EXPECT_EQ(presets.all().value.at("night"), settings);
}

TEST_F(PresetTest, a_layout_chosen_while_another_program_is_in_front_is_known_afterwards) {
  startWith({});
  showClient();
  Process layout({"setxkbmap", "-display", desktop.display(), "de"});
  ASSERT_EQ(layout.waitForEnd(), (Ending{.bySignal = false, .number = 0}));
  // Only now does the server take the layout over from this keyboard.
  user.type("a");
  showVorrin();
  // In English letters.
  panel.enter(Control::presetName, "yz");
  panel.push(Control::savePreset);
  EXPECT_TRUE(waitForNames({"zy"}));
}

TEST_F(PresetTest, save_without_a_name_stores_nothing) {
  startWith({});
  panel.push(Control::savePreset);
  panel.enter(Control::presetName, "later");
  panel.push(Control::savePreset);
  EXPECT_TRUE(waitForNames({"later"}));
}

TEST_F(PresetTest, save_under_a_taken_name_asks_and_replaces) {
  startWith({"night"});
  panel.enter(Control::presetName, "night");
  panel.push(Control::savePreset);
  ASSERT_TRUE(waitForSheet(true));
  EXPECT_EQ(presets.all().value.at("night"), night);
  user.tap(keys::enter);
  EXPECT_TRUE(waitUntil([&] { return presets.all().value.at("night") == settings; }));
}

TEST_F(PresetTest, save_under_a_taken_name_can_be_cancelled) {
  startWith({"night"});
  panel.enter(Control::presetName, "night");
  panel.push(Control::savePreset);
  ASSERT_TRUE(waitForSheet(true));
  user.tap(keys::escape);
  ASSERT_TRUE(waitForSheet(false));
  EXPECT_EQ(presets.all().value.at("night"), night);
}

TEST_F(PresetTest, load_takes_every_setting_over) {
  startWith({"night"});
  panel.push(Control::load);
  EXPECT_TRUE(waitUntil([&] { return stored() == night; }));
}

TEST_F(PresetTest, load_takes_the_selected_preset) {
  ASSERT_TRUE(presets.save(settings, "day"));
  startWith({"night"});
  panel.choose(Control::presetList, 1);
  panel.push(Control::load);
  EXPECT_TRUE(waitUntil([&] { return stored() == night; }));
}

TEST_F(PresetTest, load_stops_the_macros) {
  startWith({"night"});
  showClient();
  user.tap(keys::tab);
  expectActions(mouseMacro);
  showVorrin();
  panel.push(Control::load);
  ASSERT_TRUE(waitUntil([&] { return stored() == night; }));
  showClient();
  expectSilence();
}

TEST_F(PresetTest, rename_gives_the_selected_preset_the_name_typed) {
  startWith({"night"});
  panel.push(Control::rename);
  ASSERT_TRUE(waitForSheet(true));
  panel.replaceText("day");
  user.tap(keys::enter);
  ASSERT_TRUE(waitForNames({"day"}));
  EXPECT_EQ(presets.all().value.at("day"), night);
}

TEST_F(PresetTest, rename_can_be_cancelled) {
  startWith({"night"});
  panel.push(Control::rename);
  ASSERT_TRUE(waitForSheet(true));
  panel.replaceText("day");
  user.tap(keys::escape);
  ASSERT_TRUE(waitForSheet(false));
  EXPECT_EQ(names(), std::vector<std::string>{"night"});
}

TEST_F(PresetTest, rename_to_a_taken_name_changes_nothing) {
  startWith({"day", "night"});
  panel.push(Control::rename);
  ASSERT_TRUE(waitForSheet(true));
  panel.replaceText("night");
  user.tap(keys::enter);
  ASSERT_TRUE(waitForSheet(false));
  EXPECT_EQ(names(), (std::vector<std::string>{"day", "night"}));
}

TEST_F(PresetTest, delete_keeps_the_preset_unless_it_is_confirmed) {
  startWith({"night"});
  panel.push(Control::erase);
  ASSERT_TRUE(waitForSheet(true));
  user.tap(keys::enter);  // the first button, which cancels
  ASSERT_TRUE(waitForSheet(false));
  EXPECT_EQ(names(), std::vector<std::string>{"night"});
}

TEST_F(PresetTest, delete_removes_the_selected_preset_and_keeps_the_settings) {
  startWith({"day", "night"});
  panel.push(Control::erase);
  ASSERT_TRUE(waitForSheet(true));
  user.tap(keys::tab);
  user.tap(keys::space);
  ASSERT_TRUE(waitForNames({"night"}));
  EXPECT_EQ(stored(), settings);
}

TEST_F(PresetTest, shortcuts_start_nothing_while_a_sheet_is_open) {
  startWith({"night"});
  panel.push(Control::rename);
  ASSERT_TRUE(waitForSheet(true));
  user.tap(keys::backtick);
  user.tap(keys::escape);
  ASSERT_TRUE(waitForSheet(false));
  showClient();
  expectSilence();
}

// Each leaves the keyboard with nobody for a moment, and the pointer is over the window's buttons.
TEST_F(PresetTest, macros_stay_paused_while_a_sheet_opens_and_closes) {
  startWith({"night"});
  showClient();
  user.tap(keys::tab);
  expectActions(mouseMacro);
  showVorrin();
  panel.focus(Control::erase);
  InputWatch watch(desktop.display());
  for (int round = 0; round < 5; ++round) {
    user.tap(keys::space);
    ASSERT_TRUE(waitForSheet(true));
    user.tap(keys::enter);  // the first button, which cancels
    ASSERT_TRUE(waitForSheet(false));
  }
  EXPECT_EQ(watch.takePresses(), 10);
  showClient();
  expectActions(mouseMacro);
}

}  // namespace
}  // namespace vorrin::x11_tests
