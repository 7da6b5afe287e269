#include <algorithm>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

constexpr std::int64_t mark = 0x5652524E;
constexpr std::uint16_t digitOne = 18;

struct PostTest : TapTest {
  /// The callback's keys, once it has seen so many with the mark.
  std::vector<SeenKey> readOwn(std::ptrdiff_t expected) {
    std::vector<SeenKey> seen;
    waitUntil([&] {
      // The server may serve the keys typed for this before the last posts.
      for (const SeenKey& key : tap.readSeen(user)) seen.push_back(key);
      return std::ranges::count(seen, mark, &SeenKey::userData) >= expected;
    });
    return seen;
  }
};

TEST_F(PostTest, a_posted_key_reaches_the_client_and_shows_its_user_data) {
  swallow("50");
  ASSERT_TRUE(tap.command("post 18 1448235598 1"));
  const std::vector<SeenKey> seen = readOwn(2);
  EXPECT_EQ(describe(seen), "18+ 18-");
  EXPECT_EQ(keysOf(client.readUntil(releaseOf(digitOne))), tapOf(digitOne));
}

TEST_F(PostTest, a_posted_key_that_is_chosen_itself_arrives) {
  swallow("50");
  ASSERT_TRUE(tap.command("post 50 1448235598 1"));
  EXPECT_EQ(describe(readOwn(2)), "50+ 50-");
  EXPECT_EQ(keysOf(client.readUntil(releaseOf(keys::backtick))), tapOf(keys::backtick));
}

TEST_F(PostTest, posted_keys_arrive_while_a_chosen_key_is_held) {
  swallow("50");
  user.press(keys::backtick);
  ASSERT_TRUE(tap.command("post 18 1448235598 200"));
  readOwn(400);
  user.release(keys::backtick);
  const std::vector<ClientEvent> events = client.readAll(user);
  EXPECT_EQ(textOf(events), std::string(200, '1'));
  EXPECT_EQ(countOf(events, "KeyRelease"), 200U);
}

TEST_F(PostTest, own_and_foreign_posts_of_one_key_are_never_confused) {
  swallow("50");
  // Both type the same key through the same device of the server's, each as fast as it can.
  for (int round = 0; round < 20; ++round) {
    tap.start("post 18 1448235598 100");
    for (int count = 0; count < 100; ++count) {
      user.queue(digitOne, true, Source::xtest);
      user.queue(digitOne, false, Source::xtest);
      if (count % 10 == 0) user.flush();
    }
    user.flush();
  }
  for (int round = 0; round < 20; ++round) ASSERT_TRUE(tap.readUpTo("post yes"));
  const std::vector<SeenKey> seen = readOwn(4000);
  EXPECT_EQ(std::ranges::count(seen, mark, &SeenKey::userData), 4000);
  EXPECT_EQ(std::ranges::count(seen, 0, &SeenKey::userData), 4000);
}

TEST_F(PostTest, keys_of_the_keyboard_are_never_taken_for_own_posts) {
  swallow("50");
  for (int round = 0; round < 20; ++round) {
    tap.start("post 18 1448235598 50");
    for (int count = 0; count < 50; ++count) user.tap(digitOne);
  }
  for (int round = 0; round < 20; ++round) ASSERT_TRUE(tap.readUpTo("post yes"));
  const std::vector<SeenKey> seen = readOwn(2000);
  EXPECT_EQ(std::ranges::count(seen, mark, &SeenKey::userData), 2000);
  EXPECT_EQ(std::ranges::count(seen, 0, &SeenKey::userData), 2000);
}

TEST_F(PostTest, posted_clicks_happen_at_the_pointer) {
  swallow("50");
  user.pointAt(client.window());
  long presses = 0;
  // Each when the one before has arrived, because a window manager loses clicks of its clients in a
  // flood.
  for (int count = 0; count < 500; ++count) {
    ASSERT_TRUE(tap.command("click 1"));
    const std::vector<ClientEvent> events =
        client.readUntil([](const ClientEvent& event) { return event.kind == "ButtonRelease"; });
    presses += static_cast<long>(countOf(events, "ButtonPress"));
  }
  EXPECT_EQ(presses, 500);
}

TEST_F(PostTest, a_key_pressed_while_clicks_are_posted_is_seen_before_its_release) {
  swallow("50");
  user.pointAt(client.window());
  ASSERT_TRUE(tap.command("click-on"));
  for (int count = 0; count < 500; ++count) {
    user.press(keys::escape);
    ASSERT_TRUE(tap.waitForPress(keys::escape)) << "after " << count;
    user.release(keys::escape);
    waitFor(std::chrono::microseconds(1000 + 37 * count % 1000));
  }
}

TEST_F(PostTest, what_was_pressed_alone_is_released_at_the_end) {
  swallow("50");
  user.pointAt(client.window());
  ASSERT_TRUE(tap.command("press-only 18"));
  client.readUntil([](const ClientEvent& event) { return event.kind == "ButtonPress"; });
  tap.start("quit");
  ASSERT_EQ(tap.process().waitForEnd(), Ending{});
  const std::vector<ClientEvent> events = client.readAll(user);
  EXPECT_EQ(countOf(events, "KeyRelease"), 1U);
  EXPECT_EQ(countOf(events, "ButtonRelease"), 1U);
}

}  // namespace
}  // namespace vorrin::x11_tests
