#include "end_to_end_test.h"
#include "input_watch.h"
#include "panel.h"

namespace vorrin::x11_tests {
namespace {

// The user works Vorrin's own window.
struct WindowTest : EndToEndTest {
  Panel panel{user};

  /// Waits until the stored settings satisfy `holds`.
  static bool waitUntilStored(const std::function<bool(const Preset&)>& holds) {
    return waitUntil([&] { return holds(stored()); });
  }
};

TEST_F(WindowTest, macros_pause_while_the_window_is_in_front_and_go_on_afterwards) {
  start();
  user.tap(keys::backtick);
  user.tap(keys::tab);
  expectActions(keyboardMacro);
  expectActions(mouseMacro);
  showVorrin();
  InputWatch watch(desktop.display());
  waitFor(std::chrono::milliseconds(300));
  EXPECT_EQ(watch.takePresses(), 0);
  showClient();
  expectActions(keyboardMacro);
  expectActions(mouseMacro);
}

TEST_F(WindowTest, the_place_for_the_permission_is_a_sheet_that_return_closes) {
  start();
  showVorrin();
  panel.push(Control::openSettings);
  ASSERT_TRUE(waitUntil([&] { return hasSheet(); }));
  user.tap(keys::enter);
  ASSERT_TRUE(waitUntil([&] { return !hasSheet(); }));
  showClient();
  user.tap(keys::tab);
  expectActions(mouseMacro);
}

TEST_F(WindowTest, shortcuts_typed_into_the_window_start_nothing) {
  start();
  showVorrin();
  panel.enter(Control::presetName, "x");
  user.tap(keys::backtick);
  user.tap(keys::tab);
  showClient();
  expectSilence();
}

TEST_F(WindowTest, escape_stops_the_macros_while_the_window_is_in_front) {
  start();
  user.tap(keys::tab);
  expectActions(mouseMacro);
  showVorrin();
  user.tap(keys::escape);
  showClient();
  expectSilence();
}

TEST_F(WindowTest, macros_start_and_stop_by_its_buttons) {
  start();
  showVorrin();
  panel.choose(Control::output, 6);
  ASSERT_TRUE(waitUntilStored([](const Preset& now) { return now.digit == 7; }));
  settings.digit = 7;
  panel.push(Control::startKeyboard);
  showClient();
  expectActions(keyboardMacro);
  showVorrin();
  panel.push(Control::stopAll);
  showClient();
  expectSilence();
}

TEST_F(WindowTest, an_invalid_interval_keeps_the_macros_from_starting_until_it_is_mended) {
  start();
  showVorrin();
  panel.enter(Control::mouseInterval, "abc");
  showClient();
  user.tap(keys::tab);
  expectSilence();
  EXPECT_EQ(stored().intervals, settings.intervals);
  showVorrin();
  panel.enter(Control::mouseInterval, "0.02");
  ASSERT_TRUE(waitUntilStored([](const Preset& now) { return now.intervals[1] == 0.02; }));
  showClient();
  user.tap(keys::tab);
  expectActions(mouseMacro);
}

TEST_F(WindowTest, an_interval_edited_while_running_stops_the_macros_and_takes_effect) {
  start();
  user.tap(keys::tab);
  expectActions(mouseMacro);
  showVorrin();
  panel.enter(Control::mouseInterval, "0.2");
  ASSERT_TRUE(waitUntilStored([](const Preset& now) { return now.intervals[1] == 0.2; }));
  showClient();
  expectSilence();
  user.tap(keys::tab);
  std::vector<ClientEvent> events =
      client->readUntil([count = 0](const ClientEvent& event) mutable {
        return event.kind == "ButtonPress" && ++count == 4;
      });
  std::erase_if(events, [](const ClientEvent& event) { return event.kind != "ButtonPress"; });
  EXPECT_GT(static_cast<double>(events.back().arrival - events.front().arrival) * 1e-9, 0.3);
}

TEST_F(WindowTest, a_shortcut_chosen_in_the_window_works_at_once) {
  start();
  showVorrin();
  panel.choose(Control::mouseShortcut, 2);
  ASSERT_TRUE(waitUntilStored([](const Preset& now) { return now.keys[1] == keys::f7; }));
  showClient();
  user.tap(keys::f7);
  expectActions(mouseMacro);
  user.tap(keys::tab);
  client->readUntil(releaseOf(keys::tab));
}

TEST_F(WindowTest, a_macro_switched_off_in_the_window_gives_its_key_back) {
  start();
  showVorrin();
  panel.push(Control::enableMouse);
  ASSERT_TRUE(waitUntilStored([](const Preset& now) { return !now.enabled[1]; }));
  showClient();
  user.tap(keys::tab);
  EXPECT_EQ(keysOf(client->readAll(user)), tapOf(keys::tab));
  expectSilence();
}

}  // namespace
}  // namespace vorrin::x11_tests
