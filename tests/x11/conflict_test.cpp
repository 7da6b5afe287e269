#include <optional>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

TEST_F(TapTest, while_another_program_holds_a_key_there_is_no_tap_and_no_other_key_is_held) {
  std::optional<OtherClient> other(desktop.display());
  ASSERT_TRUE(other->holdKey(keys::tab));
  EXPECT_FALSE(tap.command("create 50 48"));
  EXPECT_TRUE(tap.command("trusted"));
  user.tap(keys::backtick);
  EXPECT_EQ(keysOf(client.readAll(user)), tapOf(keys::backtick));
  other.reset();
  EXPECT_TRUE(tap.command("create 50 48"));
}

TEST_F(TapTest, a_choice_that_is_refused_ends_the_tap) {
  OtherClient other(desktop.display());
  ASSERT_TRUE(other.holdKey(keys::f6));
  swallow("50");
  EXPECT_FALSE(tap.command("choose 50 97"));
  user.tap(keys::backtick);
  EXPECT_EQ(keysOf(client.readAll(user)), tapOf(keys::backtick));
}

TEST_F(TapTest, a_key_refused_on_a_new_keyboard_invalidates_the_tap) {
  swallow("50 48");
  OtherClient other(desktop.display());
  // Nobody else gets to the new keyboard before its key is taken.
  other.stopServer();
  other.addMaster("second");
  ASSERT_TRUE(other.holdKey(keys::tab, "second XTEST keyboard"));
  other.resumeServer();
  EXPECT_TRUE(tap.readUpTo("invalidated"));
  user.tap(keys::backtick);
  EXPECT_EQ(keysOf(client.readAll(user)), tapOf(keys::backtick));
}

TEST_F(TapTest, an_ordinary_global_shortcut_of_another_program_is_no_conflict) {
  OtherClient other(desktop.display());
  ASSERT_TRUE(other.holdKeyOfCore(keys::tab));
  swallow("48");
  user.tap(keys::tab);
  EXPECT_EQ(describe(tap.readSeen()), "48+ 48-");
  EXPECT_EQ(other.pressesReceived(), 0);
}

TEST_F(TapTest, shortcuts_are_swallowed_and_escape_is_seen_while_another_program_grabs_all) {
  swallow("50");
  for (const bool frozen : {false, true}) {
    OtherClient other(desktop.display());
    ASSERT_TRUE(other.grabKeyboard(frozen));
    for (int count = 0; count < 2; ++count) {
      user.tap(keys::backtick);
      EXPECT_EQ(describe(tap.readSeen()), "50+ 50-");
      const int received = other.pressesReceived();
      EXPECT_TRUE(frozen || received == 0) << received;
    }
    user.tap(keys::escape);
    EXPECT_EQ(describe(tap.readSeen()), "53+ 53-");
  }
}

}  // namespace
}  // namespace vorrin::x11_tests
