#include <gtest/gtest.h>

#include <set>

#include "bridge/event_synthesis.h"
#include "platform/workspace.h"
#include "support/keys.h"
#include "support/listener_test.h"

namespace vorrin {
namespace {

using test::ConnectedTest;
using KeySet = std::set<std::uint16_t>;

/// With a window that keeps itself up to date, as the real one does.
class SessionLockTest : public ConnectedTest {
 protected:
  SessionLockTest() {
    observer_ = observeWorkspace({.willSleep = [] { engine.stopAll(); },
                                  .sessionDidResignActive = [] { engine.stopAll(); },
                                  .sessionActivityDidChange = [] { updateClaimedKeys(); }});
  }

 private:
  std::shared_ptr<void> observer_;
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

TEST_F(SessionLockTest, a_tap_made_while_locked_claims_nothing_until_unlocked) {
  fake::sendSessionDidResignActive();
  engine.tap.reset();
  connectKeyboardListener();
  EXPECT_EQ(fake::claimedKeys(), KeySet{});
  fake::setSessionActive(true);
  EXPECT_EQ(fake::claimedKeys(), (KeySet{backtick, tab}));
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
