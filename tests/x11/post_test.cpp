#include <algorithm>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

constexpr std::int64_t mark = 0x5652524E;
constexpr std::uint16_t digitOne = 18;

TEST_F(TapTest, a_posted_key_reaches_the_client_and_shows_its_user_data) {
  swallow("50");
  ASSERT_TRUE(tap.command("post 18 1448235598 1"));
  const std::vector<SeenKey> seen = tap.readSeen(user);
  ASSERT_EQ(describe(seen), "18+ 18-");
  EXPECT_EQ(seen[0].userData, mark);
  EXPECT_EQ(seen[1].userData, mark);
  EXPECT_EQ(keysOf(client.readAll(user)), tapOf(digitOne));
}

TEST_F(TapTest, a_posted_key_that_is_chosen_itself_arrives) {
  swallow("50");
  ASSERT_TRUE(tap.command("post 50 7 1"));
  EXPECT_EQ(describe(tap.readSeen(user)), "50+ 50-");
  EXPECT_EQ(keysOf(received()), tapOf(keys::backtick));
}

TEST_F(TapTest, posted_keys_arrive_while_a_chosen_key_is_held) {
  swallow("50");
  user.press(keys::backtick);
  ASSERT_TRUE(tap.command("post 18 7 200"));
  user.release(keys::backtick);
  const std::vector<ClientEvent> events = received();
  EXPECT_EQ(textOf(events), std::string(200, '1'));
  EXPECT_EQ(countOf(events, "KeyRelease"), 200U);
}

TEST_F(TapTest, own_and_foreign_posts_of_one_key_are_never_confused) {
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
  const std::vector<SeenKey> seen = tap.readSeen(user);
  const auto own = std::ranges::count(seen, mark, &SeenKey::userData);
  const auto foreign = std::ranges::count(seen, 0, &SeenKey::userData);
  EXPECT_EQ(own, 4000);
  EXPECT_EQ(foreign, 4000);
}

TEST_F(TapTest, keys_of_the_keyboard_are_never_taken_for_own_posts) {
  swallow("50");
  for (int round = 0; round < 20; ++round) {
    tap.start("post 18 1448235598 50");
    for (int count = 0; count < 50; ++count) user.tap(digitOne);
  }
  for (int round = 0; round < 20; ++round) ASSERT_TRUE(tap.readUpTo("post yes"));
  const std::vector<SeenKey> seen = tap.readSeen(user);
  EXPECT_EQ(std::ranges::count(seen, mark, &SeenKey::userData), 2000);
  EXPECT_EQ(std::ranges::count(seen, 0, &SeenKey::userData), 2000);
}

TEST_F(TapTest, posted_clicks_happen_at_the_pointer) {
  user.pointAt(client.window());
  // One by one, because a window manager loses clicks of its clients in a flood.
  for (int count = 0; count < 500; ++count) ASSERT_TRUE(tap.command("click 1"));
  const std::vector<ClientEvent> events =
      client.readUntil([releases = 0](const ClientEvent& event) mutable {
        return event.kind == "ButtonRelease" && ++releases == 500;
      });
  EXPECT_EQ(countOf(events, "ButtonPress"), 500U);
}

TEST_F(TapTest, posting_needs_no_tap) {
  ASSERT_TRUE(tap.command("pointer"));
  ASSERT_TRUE(tap.command("post 18 7 1"));
  EXPECT_EQ(keysOf(client.readAll(user)), tapOf(digitOne));
}

TEST_F(TapTest, what_was_pressed_alone_is_released_at_the_end) {
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
