#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

// Layouts and keyboards that change while a tap is there.
struct ChangeTest : MapTest {
  ChangeTest() { swallow("50 48"); }
};

TEST_F(ChangeTest, every_layout_keeps_the_shortcuts_where_they_are) {
  for (const std::string layout :
       {"fr", "us,ru", "us -variant dvorak", "de -option ctrl:swapcaps"}) {
    SCOPED_TRACE(layout);
    run({"sh", "-c", "exec setxkbmap -option '' " + layout});
    user.tap(keys::backtick);
    user.tap(keys::tab);
    EXPECT_EQ(describe(tap.readSeen()), "50+ 50- 48+ 48-");
    EXPECT_EQ(keysOf(client.readAll(user)), "");
  }
}

TEST_F(ChangeTest, the_third_level_key_of_a_new_layout_is_a_modifier) {
  run({"setxkbmap", "de"});
  user.pressEvdev(modifier_keys::altGr);
  user.tap(keys::backtick);
  user.releaseEvdev(modifier_keys::altGr);
  EXPECT_EQ(countOf(received(), "KeyPress"), 2U);
}

TEST_F(ChangeTest, posted_keys_keep_their_position_under_a_new_layout) {
  run({"setxkbmap", "fr"});
  ASSERT_TRUE(tap.command("post 18 7 1"));
  EXPECT_EQ(keysOf(client.readUntil(releaseOf(18))), tapOf(18));
}

TEST_F(ChangeTest, shortcuts_stay_swallowed_when_devices_come_go_and_come_back) {
  OtherClient other(desktop.display());
  for (const auto change : {&OtherClient::addMaster, &OtherClient::removeMaster}) {
    (other.*change)("second");
    user.tap(keys::backtick);
    EXPECT_EQ(keysOf(received()), "");
  }
  other.detachKeyboard();
  tap.readSeen();
  other.attachKeyboard();
  user.tap(keys::backtick);
  EXPECT_EQ(describe(tap.readSeen()), "50+ 50-");
  EXPECT_EQ(keysOf(client.readAll(user)), "");
}

}  // namespace
}  // namespace vorrin::x11_tests
