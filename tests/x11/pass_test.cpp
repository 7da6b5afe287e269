#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

// Keys that are held back and then let through by the callback's verdict.
struct PassTest : TapTest {
  PassTest() { EXPECT_TRUE(tap.command("create 50 48")); }
};

TEST_F(PassTest, a_key_let_through_arrives_as_one_press_and_release_and_is_reported_once) {
  for (const Source source : sources) {
    user.tap(keys::backtick, source);
    EXPECT_EQ(describe(tap.readSeen()), "50+ 50-");
    EXPECT_EQ(keysOf(client.readAll(user)), tapOf(keys::backtick));
  }
}

TEST_F(PassTest, a_key_let_through_repeats_while_it_is_held) {
  user.press(keys::backtick);
  client.readUntil(nth(4, "KeyPress"));
  user.release(keys::backtick);
  const std::vector<ClientEvent> rest = received();
  EXPECT_EQ(countOf(rest, "KeyRelease"), 1U);
  EXPECT_EQ(rest.back().kind, "KeyRelease");
}

TEST_F(PassTest, a_key_is_held_back_again_after_it_was_let_through) {
  user.tap(keys::backtick);
  received();
  ASSERT_TRUE(tap.command("swallow 50"));
  for (const Source source : sources) {
    user.tap(keys::backtick, source);
    EXPECT_EQ(keysOf(received()), "");
  }
}

TEST_F(PassTest, a_disabled_tap_lets_everything_pass_unseen) {
  ASSERT_TRUE(tap.command("swallow 50 48"));
  ASSERT_TRUE(tap.command("disable"));
  user.tap(keys::backtick);
  EXPECT_EQ(keysOf(received()), tapOf(keys::backtick));
  ASSERT_TRUE(tap.command("enable"));
  user.tap(keys::tab);
  EXPECT_EQ(describe(tap.readSeen()), "48+ 48-");
  EXPECT_EQ(keysOf(client.readAll(user)), "");
}

TEST_F(PassTest, the_choice_of_keys_is_taken_up_at_once) {
  ASSERT_TRUE(tap.command("swallow 50 48 97"));
  ASSERT_TRUE(tap.command("choose 97"));
  user.tap(keys::backtick);
  user.tap(keys::f6);
  EXPECT_EQ(keysOf(received()), tapOf(keys::backtick));
}

TEST_F(PassTest, a_key_given_up_while_held_stays_swallowed_until_its_release) {
  ASSERT_TRUE(tap.command("swallow 50 48"));
  user.press(keys::backtick);
  ASSERT_TRUE(tap.waitForRepeat(keys::backtick));
  ASSERT_TRUE(tap.command("choose 48"));
  user.release(keys::backtick);
  EXPECT_EQ(keysOf(received()), "");
  user.tap(keys::backtick);
  EXPECT_EQ(keysOf(received()), tapOf(keys::backtick));
}

TEST_F(PassTest, a_key_taken_up_while_held_stays_the_clients_until_its_release) {
  ASSERT_TRUE(tap.command("swallow 50 48 97"));
  const auto isF6 = [](const ClientEvent& event) { return event.detail == keycodeOf(keys::f6); };
  user.press(keys::f6);
  client.readUntil(isF6);
  ASSERT_TRUE(tap.command("choose 97"));
  EXPECT_EQ(client.readUntil(isF6).back().kind, "KeyPress");
  user.release(keys::f6);
  const std::vector<ClientEvent> rest = received();
  ASSERT_FALSE(rest.empty());
  EXPECT_EQ(rest.back().kind, "KeyRelease");
  user.tap(keys::f6);
  EXPECT_EQ(keysOf(received()), "");
}

TEST_F(PassTest, a_key_held_while_the_tap_is_made_stays_the_clients_until_its_release) {
  ASSERT_TRUE(tap.command("drop"));
  user.press(keys::backtick);
  ASSERT_TRUE(tap.command("create 50"));
  ASSERT_TRUE(tap.command("swallow 50"));
  client.readUntil(nth(3, "KeyPress"));
  user.release(keys::backtick);
  const std::vector<ClientEvent> rest = received();
  ASSERT_FALSE(rest.empty());
  EXPECT_EQ(rest.back().kind, "KeyRelease");
  user.tap(keys::backtick);
  EXPECT_EQ(keysOf(received()), "");
}

TEST_F(PassTest, a_dropped_tap_gives_its_keys_back_and_a_new_one_can_follow) {
  ASSERT_TRUE(tap.command("swallow 50 48"));
  ASSERT_TRUE(tap.command("drop"));
  user.tap(keys::backtick);
  EXPECT_EQ(keysOf(client.readAll(user)), tapOf(keys::backtick));
  swallow("97");
  user.tap(keys::f6);
  EXPECT_EQ(describe(tap.readSeen()), "97+ 97-");
  EXPECT_EQ(keysOf(client.readAll(user)), "");
}

}  // namespace
}  // namespace vorrin::x11_tests
