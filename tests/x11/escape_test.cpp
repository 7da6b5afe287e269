#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

// Escape is the key in its position, and every key that the user's keyboard calls so.
struct EscapeTest : MapTest {
  EscapeTest() { swallow("50 48"); }

  /// The tap sees Escape once and the client gets the key.
  void expectEscape(unsigned evdevKey) {
    user.tapEvdev(evdevKey);
    EXPECT_EQ(describe(tap.readSeen()), "53+ 53-");
    EXPECT_EQ(client.readAll(user).size(), 2U);
  }
};

constexpr unsigned escapePosition = 1;
constexpr unsigned letterA = 30;
constexpr unsigned letterB = 48;
constexpr unsigned backtickPosition = 41;

TEST_F(EscapeTest, is_caps_lock_too_when_the_layout_says_so_or_swaps_them) {
  for (const char* option : {"caps:swapescape", "caps:escape"}) {
    run({"setxkbmap", "-option", "", "-option", option});
    expectEscape(modifier_keys::capsLock);
    expectEscape(escapePosition);
  }
}

TEST_F(EscapeTest, is_a_key_of_xmodmap_until_that_is_taken_back) {
  run({"xmodmap", "-e", "keysym a = Escape"});
  expectEscape(letterA);
  run({"xmodmap", "-e", "keycode 38 = a A"});
  user.tap(keys::a);
  EXPECT_EQ(describe(tap.readSeen()), "");
}

TEST_F(EscapeTest, is_a_key_only_under_the_modifier_that_makes_it_so) {
  run({"xmodmap", "-e", "keycode 38 = a Escape"});
  user.tap(keys::a);
  EXPECT_EQ(describe(tap.readSeen()), "");
  user.pressEvdev(modifier_keys::shift);
  user.tap(keys::a);
  EXPECT_EQ(describe(tap.readSeen()), "53+ 53-");
}

TEST_F(EscapeTest, is_a_key_only_in_the_layout_that_makes_it_so) {
  run({"setxkbmap", "us,de", "-option", "grp:caps_toggle"});
  run({"xmodmap", "-e", "keycode 56 = b B Escape Escape"});
  user.tapEvdev(letterB);
  EXPECT_EQ(describe(tap.readSeen()), "");
  user.tapEvdev(modifier_keys::capsLock);
  received();
  expectEscape(letterB);
}

TEST_F(EscapeTest, wins_over_a_shortcut_on_the_same_key) {
  run({"xmodmap", "-e", "keycode 49 = Escape"});
  user.tapEvdev(backtickPosition);
  const std::string seen = describe(tap.readSeen());
  EXPECT_NE(seen.find("53+"), std::string::npos) << seen;
  EXPECT_EQ(seen.find("50"), std::string::npos) << seen;
  EXPECT_EQ(keysOf(client.readAll(user)), tapOf(keys::backtick));
}

}  // namespace
}  // namespace vorrin::x11_tests
