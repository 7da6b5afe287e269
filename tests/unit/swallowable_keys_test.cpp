#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "support/listener_test.h"

namespace vorrin {
namespace {

using test::ConnectedTest;
using test::ListenerTest;
using KeySet = std::set<std::uint16_t>;
using KeySets = std::vector<KeySet>;

constexpr std::uint16_t backtick = 50;
constexpr std::uint16_t tab = 48;

TEST_F(ListenerTest, a_new_tap_may_swallow_the_shortcuts_of_enabled_macros) {
  engine.enabled[1] = false;
  connectKeyboardListener();
  EXPECT_EQ(fake::system().tapCreations.at(0).swallowable, KeySet{backtick});
}

TEST_F(ListenerTest, a_tap_made_while_the_window_is_active_may_swallow_nothing) {
  fake::setApplicationActive(true);
  connectKeyboardListener();
  EXPECT_EQ(fake::system().tapCreations.at(0).swallowable, KeySet{});
}

TEST_F(ConnectedTest, unchanged_keys_are_not_told_again) {
  updateSwallowableKeys();
  press(tab);
  release(tab);
  updateSwallowableKeys();
  EXPECT_TRUE(fake::system().swallowableChanges.empty());
}

TEST_F(ConnectedTest, changed_keys_are_told_once) {
  engine.keys[0] = 97;
  updateSwallowableKeys();
  updateSwallowableKeys();
  EXPECT_EQ(fake::system().swallowableChanges, (KeySets{{97, tab}}));
}

TEST_F(ConnectedTest, exchanged_keys_are_the_same_keys) {
  engine.keys = {tab, backtick};
  updateSwallowableKeys();
  EXPECT_TRUE(fake::system().swallowableChanges.empty());
}

TEST_F(ConnectedTest, the_key_of_a_disabled_macro_is_given_back) {
  engine.enabled[0] = false;
  updateSwallowableKeys();
  engine.enabled[1] = false;
  updateSwallowableKeys();
  EXPECT_EQ(fake::system().swallowableChanges, (KeySets{{tab}, {}}));
}

TEST_F(ConnectedTest, the_keys_are_given_back_while_the_window_is_active) {
  fake::setApplicationActive(true);
  updateSwallowableKeys();
  fake::setApplicationActive(false);
  updateSwallowableKeys();
  EXPECT_EQ(fake::system().swallowableChanges, (KeySets{{}, {backtick, tab}}));
}

TEST_F(ConnectedTest, a_held_key_stays_swallowable_while_the_window_is_active) {
  press(tab);
  fake::setApplicationActive(true);
  updateSwallowableKeys();
  release(tab);
  updateSwallowableKeys();
  EXPECT_EQ(fake::system().swallowableChanges, (KeySets{{tab}, {}}));
}

TEST_F(ConnectedTest, a_held_key_that_is_no_shortcut_any_more_stays_swallowable_to_its_release) {
  press(tab);
  engine.keys[1] = 97;
  updateSwallowableKeys();
  EXPECT_EQ(release(tab), TapVerdict::swallow);
  updateSwallowableKeys();
  EXPECT_EQ(fake::system().swallowableChanges, (KeySets{{tab, backtick, 97}, {backtick, 97}}));
}

TEST_F(ListenerTest, without_a_tap_no_keys_are_told) {
  updateSwallowableKeys();
  EXPECT_TRUE(fake::system().swallowableChanges.empty());
}

TEST_F(ConnectedTest, a_tap_refused_one_of_its_keys_is_dropped_and_stops_everything) {
  press(tab);
  int changes = 0;
  engine.changed = [&] {
    ++changes;
    updateSwallowableKeys();
  };
  engine.keys[0] = 97;
  fake::system().refusesKeys = true;
  updateSwallowableKeys();
  EXPECT_FALSE(engine.tap);
  EXPECT_TRUE(engine.held.empty());
  EXPECT_FALSE(engine.running[1]);
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(fake::system().swallowableChanges.size(), 1U);
  EXPECT_EQ(fake::livingTaps(), 0U);
}

TEST_F(ConnectedTest, after_a_refused_key_the_next_tap_is_made_with_the_keys_wanted_now) {
  engine.keys[0] = 97;
  fake::system().refusesKeys = true;
  updateSwallowableKeys();
  engine.keys[0] = 98;
  fake::system().refusesKeys = false;
  connectKeyboardListener();
  EXPECT_EQ(fake::system().tapCreations.back().swallowable, (KeySet{98, tab}));
  EXPECT_EQ(press(98), TapVerdict::swallow);
  updateSwallowableKeys();
  EXPECT_EQ(fake::system().swallowableChanges.size(), 1U);
}

TEST_F(ConnectedTest, a_key_refused_during_the_press_that_toggles_ends_the_tap_in_the_callback) {
  engine.keys[0] = 97;
  fake::system().refusesKeys = true;
  EXPECT_EQ(press(tab), TapVerdict::swallow);
  EXPECT_FALSE(engine.tap);
  EXPECT_FALSE(engine.running[1]);
}

}  // namespace
}  // namespace vorrin
