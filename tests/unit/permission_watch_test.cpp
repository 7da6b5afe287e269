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

TEST_F(PermissionWatchTest, it_connects_when_trusted_and_from_then_on_only_refreshes) {
  permissionWatchTick(connect, refresh);
  EXPECT_EQ(calls, "cr");
  EXPECT_TRUE(engine.tap);
  permissionWatchTick(connect, refresh);
  fake::system().trusted = false;
  permissionWatchTick(connect, refresh);
  EXPECT_EQ(calls, "crrr");
}

TEST_F(PermissionWatchTest, a_permission_given_later_is_noticed_within_a_second_without_a_prompt) {
  fake::system().trusted = false;
  schedulePermissionPoll(connect, refresh);
  fake::advance(0.999);
  EXPECT_EQ(calls, "");
  fake::advance(2.5);
  EXPECT_EQ(calls, "rrr");
  EXPECT_EQ(fake::system().promptingQueries, 0U);
  fake::system().trusted = true;
  fake::advance(3);
  EXPECT_EQ(calls, "rrrcrrr");
}

TEST_F(PermissionWatchTest, a_tap_that_ended_is_made_anew) {
  const Timer poll = schedulePermissionPoll(connect, refresh);
  fake::advance(1);
  fake::invalidateTap();
  fake::advance(1);
  EXPECT_EQ(calls, "crcr");
  EXPECT_TRUE(fake::tapIsListening());
}

}  // namespace
}  // namespace vorrin
