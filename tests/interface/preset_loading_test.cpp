#include "bridge/program_engine.h"
#include "presets_test.h"

namespace vorrin {
namespace {

using PresetLoading = PresetsTest;

TEST_F(PresetLoading, loading_fills_every_control_and_stops_the_macros) {
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

TEST_F(PresetLoading, loading_makes_the_preset_the_current_settings) {
  savePreset("Night", other());
  click(button("Load"));
  EXPECT_EQ(app->currentPreset(), other());
  EXPECT_EQ(engine.keys[0], 97);
  EXPECT_EQ(engine.digit, 4);
  EXPECT_FALSE(engine.enabled[0]);
  EXPECT_EQ(stored("interval0"), DefaultsObject(2.0));
  EXPECT_EQ(stored("enabled0"), DefaultsObject(false));
}

TEST_F(PresetLoading, loading_says_so_in_both_notices_and_the_name) {
  savePreset("Night", other());
  click(button("Load"));
  EXPECT_EQ(app->presetName.text(), "Night");
  EXPECT_EQ(app->presetNotice.text(), "Loaded “Night”. Both macros are OFF.");
  EXPECT_EQ(app->saveNotice.text(), "Saved automatically · macros stopped · presets unchanged");
}

TEST_F(PresetLoading, loading_mends_a_draft_that_was_refused) {
  savePreset("Night", other());
  type(app->fields[0], "abc");
  ASSERT_FALSE(app->settingsValid);
  click(button("Load"));
  EXPECT_TRUE(app->settingsValid);
}

TEST_F(PresetLoading, a_preset_that_another_process_deleted_is_not_loaded) {
  savePreset("Night", other());
  ASSERT_TRUE(PresetStore(UserDefaults::standard()).remove("Night"));
  click(button("Load"));
  EXPECT_EQ(app->presetNotice.text(), "Choose a saved preset first.");
}

}  // namespace
}  // namespace vorrin
