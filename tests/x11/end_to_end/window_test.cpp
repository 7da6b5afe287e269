#include "end_to_end_test.h"
#include "platform/user_defaults.h"
#include "settings/preset_store.h"

namespace vorrin::x11_tests {
namespace {

/// Controls of Vorrin's window, by how often the Tab key is pressed to get to them.
enum class Control {
  enableKeyboard = 2,
  mouseShortcut = 7,  ///< while the keyboard macro is disabled, and with it its Start button
  presetName = 12,
  savePreset = 13
};

// The user works Vorrin's own window.
struct WindowTest : EndToEndTest {
  /// Moves the keyboard on to there; at first it is before all controls.
  void focus(Control control) {
    for (; place < static_cast<int>(control); ++place) user.tap(keys::tab);
  }

  /// Presses a button or switches a box.
  void push(Control control) {
    focus(control);
    user.tap(keys::space);
  }

  int place = 0;
};

TEST_F(WindowTest, macros_pause_while_the_window_is_in_front_where_escape_stops_them_too) {
  start();
  startMacros();
  showVorrin();
  expectNothingPressed();
  showClient();
  expectActions(keyboardMacro);
  expectActions(mouseMacro);
  showVorrin();
  user.tap(keys::escape);
  showClient();
  expectSilence();
}

TEST_F(WindowTest, what_is_changed_in_it_works_at_once) {
  start();
  showVorrin();
  push(Control::enableKeyboard);
  focus(Control::mouseShortcut);
  for (int step = 0; step < 2; ++step) user.tap(keys::down);
  ASSERT_TRUE(waitUntil([] { return stored().keys[1] == keys::f7 && !stored().enabled[0]; }));
  showClient();
  user.tap(keys::backtick);
  user.tap(keys::tab);
  EXPECT_EQ(keysOf(client->readAll(user)), tapOf(keys::backtick) + " " + tapOf(keys::tab));
  expectSilence();
  user.tap(keys::f7);
  expectActions(mouseMacro);
}

TEST_F(WindowTest, a_layout_chosen_while_another_program_is_in_front_is_known_afterwards) {
  const PresetStore presets{UserDefaults::standard()};
  start();
  user.type("a");
  Process layout({"setxkbmap", "-display", desktop.display(), "de"});
  ASSERT_EQ(layout.waitForEnd(), Ending{});
  // Only now does the server take the layout over from this keyboard.
  user.type("a");
  showVorrin();
  // In English letters.
  focus(Control::presetName);
  user.type("yz");
  push(Control::savePreset);
  EXPECT_TRUE(waitUntil([&] { return presets.all().value.contains("zy"); }));
  Process former({"setxkbmap", "-display", desktop.display(), "us"});
  EXPECT_EQ(former.waitForEnd(), Ending{});
}

}  // namespace
}  // namespace vorrin::x11_tests
