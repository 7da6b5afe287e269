#include <gmock/gmock.h>

#include <csignal>

#include "end_to_end_test.h"
#include "input_watch.h"
#include "other_client.h"
#include "panel.h"
#include "platform/user_defaults.h"
#include "settings/preset_store.h"

namespace vorrin::x11_tests {
namespace {

// Starts, ends, crashes, and others in the way.
struct LifecycleTest : EndToEndTest {
  void runBothMacros() {
    start();
    user.tap(keys::backtick);
    user.tap(keys::tab);
    expectActions(keyboardMacro);
    expectActions(mouseMacro);
  }
};

TEST_F(LifecycleTest, settings_and_presets_outlive_a_crash) {
  settings = {{0.25, 0.5}, {keys::f8, keys::f6}, 4, {true, true}};
  start();
  showVorrin();
  Panel panel(user);
  panel.enter(Control::keyboardInterval, "0.125");
  panel.enter(Control::presetName, "night");
  panel.push(Control::savePreset);
  settings.intervals[0] = 0.125;
  const PresetStore presets(UserDefaults::standard());
  ASSERT_TRUE(waitUntil([&] { return presets.all().value.contains("night"); }));
  kill();
  startProgram();
  EXPECT_EQ(stored(), settings);
  EXPECT_EQ(presets.all().value.at("night"), settings);
  showClient();  // waits until these shortcuts are held
}

TEST_F(LifecycleTest, every_start_is_with_both_macros_off) {
  runBothMacros();
  kill();
  startProgram();
  showClient();
  InputWatch watch(desktop.display());
  waitFor(std::chrono::milliseconds(300));
  EXPECT_EQ(watch.takePresses(), 0);
}

TEST_F(LifecycleTest, a_crash_leaves_no_key_or_button_down) {
  runBothMacros();
  kill();
  expectSilence();
  waitFor(std::chrono::milliseconds(1000));  // a key left down would repeat by then
  EXPECT_EQ(actionsAmong(client->readAll(user)), 0U);
}

TEST_F(LifecycleTest, a_crash_gives_the_shortcuts_back) {
  start();
  user.press(keys::tab);
  kill();
  user.release(keys::tab);
  user.tap(keys::tab);
  user.type("a");
  EXPECT_THAT(keysOf(client->readAll(user)),
              testing::HasSubstr(tapOf(keys::tab) + " " + tapOf(keys::a)));
}

TEST_F(LifecycleTest, closing_the_window_ends_the_program_and_its_macros) {
  runBothMacros();
  windows.close(vorrinWindow());
  EXPECT_EQ(program->process().waitForEnd(), Ending{});
  expectSilence();
}

TEST_F(LifecycleTest, a_termination_signal_ends_the_program_and_its_macros) {
  runBothMacros();
  program->process().signal(SIGTERM);
  EXPECT_EQ(program->process().waitForEnd(), Ending{});
  expectSilence();
}

TEST_F(LifecycleTest, a_shortcut_held_by_another_program_is_taken_when_it_is_free) {
  auto other = std::make_unique<OtherClient>(desktop.display());
  ASSERT_TRUE(other->holdKey(keys::tab));
  launch();
  client = std::make_unique<Client>(desktop.display());
  EXPECT_TRUE(program->waitForStatus(true, false, false));
  other.reset();
  EXPECT_TRUE(program->waitForStatus(true, true, true));
  showClient();
  user.tap(keys::tab);
  expectActions(mouseMacro);
}

TEST_F(LifecycleTest,
       a_shortcut_taken_while_the_window_is_in_front_shows_at_once_until_it_is_free) {
  start();
  user.tap(keys::backtick);
  expectActions(keyboardMacro);
  showVorrin();
  auto other = std::make_unique<OtherClient>(desktop.display());
  ASSERT_TRUE(other->holdKey(keys::tab));
  EXPECT_TRUE(program->waitForStatus(true, false, false));
  other.reset();
  EXPECT_TRUE(program->waitUntilReady());
  showClient();
  expectSilence();
}

TEST_F(LifecycleTest, a_new_shortcut_held_by_another_program_shows_at_once) {
  OtherClient other(desktop.display());
  ASSERT_TRUE(other.holdKey(keys::f6));
  start();
  showVorrin();
  Panel panel(user);
  panel.choose(Control::mouseShortcut, 1);
  EXPECT_TRUE(program->waitForStatus(true, false, false));
  panel.choose(Control::mouseShortcut, 1);
  EXPECT_TRUE(program->waitUntilReady());
}

TEST_F(LifecycleTest, a_second_program_waits_for_the_keys_of_the_first) {
  start();
  const Home otherHome;
  const Program second(desktop.display(), otherHome);
  EXPECT_TRUE(second.waitForStatus(true, false, false));
  program.reset();
  EXPECT_TRUE(second.waitUntilReady());
}

}  // namespace
}  // namespace vorrin::x11_tests
