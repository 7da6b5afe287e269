#include <algorithm>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

constexpr std::uint16_t digitOne = 18;

struct PostTest : MapTest {};

TEST_F(PostTest, posted_keys_reach_the_client_and_are_not_shown) {
  swallow("50");
  std::string typed;
  for (const std::uint16_t key : keys::digits) {
    ASSERT_TRUE(tap.command("post " + std::to_string(key) + " 7 1"));
    typed += textOf(client.readUntil(releaseOf(key)));
  }
  EXPECT_EQ(typed, "0123456789");
  ASSERT_TRUE(tap.command("post 50 7 1"));
  EXPECT_EQ(keysOf(client.readUntil(releaseOf(keys::backtick))), tapOf(keys::backtick));
  EXPECT_EQ(describe(tap.readSeen()), "");
}

TEST_F(PostTest, posted_keys_arrive_while_a_claimed_key_is_held) {
  swallow("50");
  user.press(keys::backtick);
  ASSERT_TRUE(tap.command("post 18 7 200"));
  user.release(keys::backtick);
  const std::vector<ClientEvent> events = received();
  EXPECT_EQ(textOf(events), std::string(200, '1'));
  EXPECT_EQ(countOf(events, "KeyRelease"), 200U);
}

/// Own posts of a key that is Escape, and others' from the same device or the keyboard.
struct PostedEscape : PostTest, testing::WithParamInterface<Source> {};

INSTANTIATE_TEST_SUITE_P(Sources, PostedEscape, testing::ValuesIn(sources), nameOf);

TEST_P(PostedEscape, is_never_taken_for_the_users) {
  swallow("50");
  // Only events of such keys are looked at.
  run({"xmodmap", "-e", "keysym 1 = Escape"});
  // What is posted before the tap has read the new map is no Escape to it.
  static_cast<void>(tap.readSeen());
  constexpr int rounds = 20;
  constexpr int keysOfRound = 100;
  for (int round = 0; round < rounds; ++round) {
    tap.start("post 18 7 " + std::to_string(keysOfRound));
    for (int count = 0; count < keysOfRound; ++count) {
      for (const bool down : {true, false}) user.queue(digitOne, down, GetParam());
      if (count % 10 == 0) user.flush();
    }
    user.flush();
  }
  for (int round = 0; round < rounds; ++round) ASSERT_TRUE(tap.readUpTo("post yes"));
  const std::vector<SeenKey> seen = tap.readSeen();
  EXPECT_EQ(std::ranges::count(seen, true, &SeenKey::down), rounds * keysOfRound);
}

TEST_F(PostTest, posted_clicks_happen_at_the_pointer) {
  swallow("50");
  user.pointAt(client.window());
  std::size_t presses = 0;
  // Each when the one before has arrived, because a window manager loses clicks of its clients in a
  // flood.
  for (int count = 0; count < 500; ++count) {
    ASSERT_TRUE(tap.command("click 1"));
    presses += countOf(client.readUntil(nth(1, "ButtonRelease")), "ButtonPress");
  }
  EXPECT_EQ(presses, 500U);
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
  // Killed at its work, in front of a server without a processor, it could leave the button down
  // for the tests that follow.
  tap.start("quit");
  EXPECT_EQ(tap.process().waitForEnd(), Ending{});
}

}  // namespace
}  // namespace vorrin::x11_tests
