#include "bridge/permission_watch.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "bridge/keyboard_listener.h"
#include "support/system_test.h"

namespace vorrin {
namespace {

class PermissionWatchTest : public test::SystemTest {
 protected:
  const std::function<void()> connect = [this] {
    calls += 'c';
    connectKeyboardListener();
  };
  const std::function<void()> refresh = [this] { calls += 'r'; };

  /// 'c' for every call of `connect` and 'r' for every call of `refresh`, in their order.
  std::string calls;
};

TEST_F(PermissionWatchTest, with_trust_and_without_a_tap_it_connects_then_refreshes) {
  permissionWatchTick(connect, refresh);
  EXPECT_EQ(calls, "cr");
  EXPECT_TRUE(engine.tap);
}

TEST_F(PermissionWatchTest, without_trust_it_only_refreshes_and_never_prompts) {
  fake::system().trusted = false;
  permissionWatchTick(connect, refresh);
  EXPECT_EQ(calls, "r");
  EXPECT_EQ(fake::system().silentQueries, 1U);
  EXPECT_EQ(fake::system().promptingQueries, 0U);
}

TEST_F(PermissionWatchTest, with_a_tap_it_only_refreshes_and_asks_nothing) {
  connectKeyboardListener();
  permissionWatchTick(connect, refresh);
  EXPECT_EQ(calls, "r");
  EXPECT_EQ(fake::system().silentQueries, 0U);
}

TEST_F(PermissionWatchTest, with_a_tap_it_does_not_connect_after_trust_was_lost) {
  connectKeyboardListener();
  fake::system().trusted = false;
  permissionWatchTick(connect, refresh);
  EXPECT_EQ(calls, "r");
}

TEST_F(PermissionWatchTest, the_first_look_comes_one_second_after_it_was_scheduled) {
  const Timer poll = schedulePermissionPoll(connect, refresh);
  EXPECT_TRUE(poll.isValid());
  fake::advance(0.999);
  EXPECT_EQ(calls, "");
  fake::advance(0.001);
  EXPECT_EQ(calls, "cr");
}

TEST_F(PermissionWatchTest, a_permission_given_later_is_noticed_within_a_second) {
  fake::system().trusted = false;
  const Timer poll = schedulePermissionPoll(connect, refresh);
  fake::advance(3.5);
  EXPECT_EQ(calls, "rrr");
  fake::system().trusted = true;
  fake::advance(3);
  EXPECT_EQ(calls, "rrrcrrr");
}

TEST_F(PermissionWatchTest, a_tap_refused_is_tried_for_again_at_every_look) {
  fake::system().refusesTaps = true;
  const Timer poll = schedulePermissionPoll(connect, refresh);
  fake::advance(2);
  fake::system().refusesTaps = false;
  fake::advance(2);
  EXPECT_EQ(calls, "crcrcrr");
}

TEST_F(PermissionWatchTest, a_tap_that_ended_is_made_anew) {
  const Timer poll = schedulePermissionPoll(connect, refresh);
  fake::advance(1);
  fake::invalidateTap();
  fake::advance(1);
  EXPECT_EQ(calls, "crcr");
  EXPECT_TRUE(fake::tapIsListening());
}

TEST_F(PermissionWatchTest, it_pauses_while_a_menu_is_open) {
  const Timer poll = schedulePermissionPoll(connect, refresh);
  fake::setTracking(true);
  fake::advance(5);
  EXPECT_EQ(calls, "");
  fake::setTracking(false);
  fake::advance(0);
  EXPECT_EQ(calls, "cr");
}

TEST_F(PermissionWatchTest, it_goes_on_without_anyone_keeping_the_timer) {
  schedulePermissionPoll(connect, refresh);
  fake::advance(2);
  EXPECT_EQ(calls, "crr");
}

TEST_F(PermissionWatchTest, it_ends_when_the_timer_is_invalidated) {
  const Timer poll = schedulePermissionPoll(connect, refresh);
  poll.invalidate();
  fake::advance(5);
  EXPECT_EQ(calls, "");
}

}  // namespace
}  // namespace vorrin
