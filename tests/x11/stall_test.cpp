#include <csignal>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

// The program with the tap is stopped, hangs or dies.
struct StallTest : TapTest {
  StallTest() { swallow("50 48"); }

  /// Holds a key down for more than two seconds: its repeats come 25 a second after the first two
  /// thirds of a second.
  void holdLong(std::uint16_t key) {
    user.press(key);
    client.readUntil(nth(42, "KeyPress"));
    user.release(key);
  }
};

TEST_F(StallTest, other_keys_flow_while_the_program_is_stopped_also_after_a_shortcut) {
  tap.process().signal(SIGSTOP);
  user.type("abc");
  user.tap(keys::backtick);
  user.type("abc");
  EXPECT_EQ(textOf(client.readAll(user)), "abcabc");
}

TEST_F(StallTest, of_keys_pressed_long_ago_escape_alone_counts_on_waking_up) {
  tap.process().signal(SIGSTOP);
  user.tap(keys::backtick);
  user.tap(keys::escape);
  holdLong(keys::a);
  tap.process().signal(SIGCONT);
  EXPECT_EQ(describe(tap.readSeen()), "53+ 53-");
  client.readAll(user);
  user.tap(keys::backtick);
  EXPECT_EQ(describe(tap.readSeen()), "50+ 50-");
  EXPECT_EQ(keysOf(client.readAll(user)), "");
}

TEST_F(StallTest, the_release_of_a_shortcut_pressed_in_time_is_seen_however_late) {
  user.press(keys::backtick);
  ASSERT_TRUE(tap.waitForRepeat(keys::backtick));
  tap.process().signal(SIGSTOP);
  user.release(keys::backtick);
  holdLong(keys::a);
  tap.process().signal(SIGCONT);
  const std::string seen = describe(tap.readSeen());
  EXPECT_NE(seen.find("50-"), std::string::npos) << seen;
}

TEST_F(StallTest, while_the_main_loop_is_busy_a_shortcut_counts_and_no_key_is_lost) {
  tap.start("block 400");
  user.press(keys::backtick);
  user.type("abc");
  ASSERT_TRUE(tap.readUpTo("block yes"));
  user.release(keys::backtick);
  EXPECT_EQ(describe(tap.readSeen()), "50+ 50-");
  EXPECT_EQ(textOf(client.readAll(user)), "abc");
}

TEST_F(StallTest, a_program_killed_with_a_shortcut_held_leaves_the_keyboard_as_it_was) {
  user.press(keys::backtick);
  ASSERT_TRUE(tap.waitForRepeat(keys::backtick));
  killTap();
  user.release(keys::backtick);
  user.type("a");
  user.tap(keys::backtick);
  const std::vector<ClientEvent> events = client.readAll(user);
  EXPECT_EQ(textOf(events), "a");
  EXPECT_EQ(countOf(events, "KeyPress"), countOf(events, "KeyRelease"));
}

TEST_F(StallTest, a_program_killed_while_stopped_with_a_shortcut_held_frees_the_keyboard) {
  tap.process().signal(SIGSTOP);
  user.press(keys::backtick);
  killTap();
  user.type("abc");
  user.release(keys::backtick);
  EXPECT_EQ(textOf(client.readAll(user)), "abc");
}

}  // namespace
}  // namespace vorrin::x11_tests
