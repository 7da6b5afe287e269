#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include "tap_test.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::x11_tests {
namespace {

// What the X server's tests say of posting too, apart from own posts that a tap shows: the helper's
// devices are not listened to.
using PostTest = TapTest;

constexpr std::uint16_t digitOne = 18;

TEST_F(PostTest, a_posted_key_reaches_the_client_and_no_tap) {
  swallow("50");
  ASSERT_TRUE(tap.command("post 18 1448235598 1"));
  EXPECT_EQ(keysOf(client.readUntil(releaseOf(digitOne))), tapOf(digitOne));
  EXPECT_EQ(describe(tap.readSeen()), "");
}

TEST_F(PostTest, posted_keys_arrive_while_a_chosen_key_is_held) {
  swallow("50");
  user.press(keys::backtick);
  std::string text;
  for (int count = 0; count < 20; ++count) {
    ASSERT_TRUE(tap.command("post 18 1448235598 10"));
    for (int key = 0; key < 10; ++key) text += textOf(client.readUntil(releaseOf(digitOne)));
  }
  EXPECT_EQ(text, std::string(200, '1'));
  user.release(keys::backtick);
  EXPECT_EQ(keysOf(received()), "");
}

TEST_F(PostTest, posted_clicks_arrive) {
  for (int count = 0; count < 200; ++count) {
    ASSERT_TRUE(tap.command("click 1"));
    const auto click =
        client.readUntil([](const ClientEvent& event) { return event.kind == "ButtonRelease"; });
    EXPECT_EQ(countOf(click, "ButtonPress"), 1U);
  }
}

TEST_F(PostTest, a_key_pressed_while_clicks_are_posted_is_seen_before_its_release) {
  swallow("50");
  ASSERT_TRUE(tap.command("click-on"));
  for (int count = 0; count < 50; ++count) {
    user.press(keys::escape);
    ASSERT_TRUE(tap.waitForPress(keys::escape)) << "after " << count;
    user.release(keys::escape);
  }
}

TEST_F(PostTest, posting_needs_no_tap) {
  ASSERT_TRUE(tap.command("pointer"));
  ASSERT_TRUE(tap.command("post 18 7 1"));
  EXPECT_EQ(keysOf(client.readUntil(releaseOf(digitOne))), tapOf(digitOne));
}

TEST_F(PostTest, what_was_pressed_alone_is_released_at_the_end) {
  ASSERT_TRUE(tap.command("press-only 18"));
  client.readUntil([](const ClientEvent& event) { return event.kind == "ButtonPress"; });
  tap.start("quit");
  ASSERT_EQ(tap.process().waitForEnd(), Ending{});
  bool keyUp = false;
  bool buttonUp = false;
  EXPECT_TRUE(waitUntil([&] {
    for (const auto& event : world.take()) {
      keyUp = keyUp || event.kind == "KeyRelease";
      buttonUp = buttonUp || event.kind == "ButtonRelease";
    }
    // The devices go right after the releases, and with them what a reader has not read yet: to it
    // their end is the release.
    return (keyUp && buttonUp) || !world.seesHelper();
  }));
}

}  // namespace
}  // namespace vorrin::x11_tests
