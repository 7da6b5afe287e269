#include <gtest/gtest.h>

#include <set>

#include "bridge/event_synthesis.h"
#include "bridge/permission_watch.h"
#include "platform/workspace.h"
#include "support/keys.h"
#include "support/listener_test.h"

namespace vorrin {
namespace {

using test::ConnectedTest;
using test::ListenerTest;
using KeySet = std::set<std::uint16_t>;

constexpr std::uint16_t f6 = 97;

/// One look of the permission watch.
void look() {
  permissionWatchTick([] { connectKeyboardListener(); }, [] {});
}

TEST_F(ConnectedTest, the_shortcuts_of_the_enabled_macros_are_claimed) {
  EXPECT_EQ(fake::claimedKeys(), (KeySet{backtick, tab}));
  engine.keys[0] = f6;
  updateClaimedKeys();
  EXPECT_EQ(fake::claimedKeys(), (KeySet{f6, tab}));
  engine.enabled[0] = false;
  fake::system().keysOfOthers = {f6};
  updateClaimedKeys();
  EXPECT_EQ(fake::claimedKeys(), KeySet{tab});
  EXPECT_TRUE(engine.tap) << "another program's key does not matter to a disabled macro";
}

TEST_F(ListenerTest, the_keys_are_given_back_while_the_window_is_active) {
  fake::setApplicationActive(true);
  connectKeyboardListener();
  EXPECT_EQ(fake::claimedKeys(), KeySet{});
  fake::setApplicationActive(false);
  updateClaimedKeys();
  EXPECT_EQ(fake::claimedKeys(), (KeySet{backtick, tab}));
}

TEST_F(ConnectedTest, a_held_key_stays_claimed_to_its_release_whatever_changes_meanwhile) {
  press(tab);
  engine.keys[1] = f6;
  fake::setApplicationActive(true);
  updateClaimedKeys();
  EXPECT_EQ(fake::claimedKeys(), KeySet{tab});
  EXPECT_EQ(release(tab), TapVerdict::swallow);
  look();
  EXPECT_EQ(fake::claimedKeys(), KeySet{});
}

TEST_F(ConnectedTest, a_tap_refused_one_of_its_keys_is_dropped_and_stops_everything) {
  press(tab);
  fake::system().keysOfOthers = {f6};
  engine.keys[0] = f6;
  updateClaimedKeys();
  EXPECT_FALSE(engine.tap);
  EXPECT_EQ(fake::livingTaps(), 0U);
  EXPECT_TRUE(engine.held.empty());
  EXPECT_FALSE(engine.running[1]);
}

TEST_F(ListenerTest, there_is_no_listener_while_another_program_holds_a_shortcut) {
  for (const bool windowIsActive : {false, true}) {
    fake::setApplicationActive(windowIsActive);
    engine.tap.reset();
    fake::system().keysOfOthers = {tab};
    connectKeyboardListener();
    EXPECT_FALSE(engine.tap);
    look();
    EXPECT_FALSE(engine.tap);
    fake::system().keysOfOthers.clear();
    look();
    EXPECT_TRUE(engine.tap);
  }
}

TEST_F(ConnectedTest, a_shortcut_taken_while_the_window_is_active_ends_the_listener_at_a_look) {
  engine.toggle(0);
  fake::setApplicationActive(true);
  updateClaimedKeys();
  fake::system().keysOfOthers = {tab};
  look();
  EXPECT_FALSE(engine.tap);
  EXPECT_FALSE(engine.running[0]);
}

/// With a window that keeps itself up to date, as the real one does.
struct SessionLockTest : ConnectedTest {
  std::shared_ptr<void> observer =
      observeWorkspace({.willSleep = [] { engine.stopAll(); },
                        .sessionDidResignActive = [] { engine.stopAll(); },
                        .sessionActivityDidChange = [] { updateClaimedKeys(); }});
};

TEST_F(SessionLockTest, a_password_typed_at_the_lock_screen_arrives_whole) {
  fake::sendSessionDidResignActive();
  for (const std::uint16_t key : {backtick, tab, std::uint16_t{0}}) {
    EXPECT_EQ(press(key), TapVerdict::pass);
    EXPECT_EQ(release(key), TapVerdict::pass);
  }
  EXPECT_FALSE(engine.running[0] || engine.running[1]);
  EXPECT_EQ(fake::claimedKeys(), KeySet{});
}

TEST_F(SessionLockTest, the_shortcuts_are_back_after_unlocking_with_both_macros_off) {
  press(tab);
  fake::sendSessionDidResignActive();
  release(tab);
  EXPECT_FALSE(macrosPermitted(true));
  fake::setSessionActive(true);
  EXPECT_TRUE(macrosPermitted(true));
  EXPECT_FALSE(engine.running[1]);
  EXPECT_EQ(press(tab), TapVerdict::swallow);
  EXPECT_TRUE(engine.running[1]);
}

TEST_F(SessionLockTest, a_screen_saver_that_does_not_lock_pauses_a_macro_and_ends_none) {
  press(tab);
  release(tab);
  fake::setSessionActive(false);
  EXPECT_EQ(fake::claimedKeys(), KeySet{});
  EXPECT_EQ(press(backtick), TapVerdict::pass);
  emitMacro(0, nullptr);
  emitMacro(1, nullptr);
  EXPECT_TRUE(fake::system().posted.empty());
  fake::setSessionActive(true);
  EXPECT_TRUE(engine.running[1]);
  emitMacro(1, nullptr);
  EXPECT_FALSE(fake::system().posted.empty());
}

TEST_F(SessionLockTest, escape_ends_a_macro_that_a_screen_saver_pauses) {
  press(tab);
  fake::setSessionActive(false);
  EXPECT_EQ(press(escapeKey), TapVerdict::pass);
  EXPECT_FALSE(engine.running[1]);
}

}  // namespace
}  // namespace vorrin
