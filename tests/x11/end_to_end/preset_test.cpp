#include "end_to_end_test.h"
#include "input_watch.h"
#include "panel.h"
#include "platform/user_defaults.h"
#include "settings/preset_store.h"

namespace vorrin::x11_tests {
namespace {

// The preset panel of the real window, worked by the keyboard.
struct PresetTest : EndToEndTest {
  Panel panel{user};
  PresetStore presets{UserDefaults::standard()};
  const Preset night{{0.5, 0.25}, {keys::f6, keys::f7}, 7, {true, false}};

  /// Starts with `night` saved, if wanted, and the window in front.
  void startWith(bool isSaved) {
    ASSERT_TRUE(!isSaved || presets.save(night, "night"));
    panel.setHasPresets(isSaved);
    start();
    showVorrin();
  }

  bool waitForPresets(const std::map<std::string, Preset>& expected) {
    return waitUntil([&] { return presets.all().value == expected; });
  }

  /// Waits for a sheet over the window, or for its end.
  bool waitForSheet(bool shown) {
    return waitUntil([&] { return hasSheet() == shown; });
  }
};

TEST_F(PresetTest, a_preset_is_saved_renamed_and_deleted) {
  startWith(false);
  panel.enter(Control::presetName, " day ");
  panel.push(Control::savePreset);
  ASSERT_TRUE(waitForPresets({{"day", settings}}));
  panel.setHasPresets(true);
  panel.push(Control::rename);
  ASSERT_TRUE(waitForSheet(true));
  panel.replaceText("week");
  user.tap(keys::enter);
  ASSERT_TRUE(waitForPresets({{"week", settings}}));
  ASSERT_TRUE(waitForSheet(false));
  panel.push(Control::erase);
  ASSERT_TRUE(waitForSheet(true));
  user.tap(keys::tab);  // the first button cancels
  user.tap(keys::space);
  EXPECT_TRUE(waitForPresets({}));
}

TEST_F(PresetTest, a_layout_chosen_while_another_program_is_in_front_is_known_afterwards) {
  startWith(false);
  showClient();
  user.type("a");
  Process layout({"setxkbmap", "-display", desktop.display(), "de"});
  ASSERT_EQ(layout.waitForEnd(), Ending{});
  // Only now does the server take the layout over from this keyboard.
  user.type("a");
  showVorrin();
  // In English letters.
  panel.enter(Control::presetName, "yz");
  panel.push(Control::savePreset);
  EXPECT_TRUE(waitForPresets({{"zy", settings}}));
  Process former({"setxkbmap", "-display", desktop.display(), "us"});
  EXPECT_EQ(former.waitForEnd(), Ending{});
}

TEST_F(PresetTest, load_takes_every_setting_over_and_stops_the_macros) {
  startWith(true);
  showClient();
  user.tap(keys::tab);
  expectActions(mouseMacro);
  showVorrin();
  panel.push(Control::load);
  ASSERT_TRUE(waitUntil([&] { return stored() == night; }));
  showClient();
  expectSilence();
}

TEST_F(PresetTest, shortcuts_start_nothing_while_a_sheet_is_open) {
  startWith(true);
  panel.push(Control::rename);
  ASSERT_TRUE(waitForSheet(true));
  user.tap(keys::backtick);
  user.tap(keys::escape);
  ASSERT_TRUE(waitForSheet(false));
  showClient();
  expectSilence();
}

TEST_F(PresetTest, macros_stay_paused_while_a_sheet_opens_and_closes) {
  startWith(true);
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
