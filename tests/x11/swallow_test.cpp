#include <gmock/gmock.h>
#include <sched.h>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

struct EachShortcutKey : TapTest, testing::WithParamInterface<std::uint16_t> {
  std::string key = std::to_string(GetParam());
};

INSTANTIATE_TEST_SUITE_P(SixKeys, EachShortcutKey, testing::ValuesIn(keys::shortcuts),
                         [](const auto& key) { return "key" + std::to_string(key.param); });

TEST_P(EachShortcutKey, is_seen_and_swallowed_with_its_repeats_and_release) {
  swallow(key);
  user.press(GetParam());
  ASSERT_TRUE(tap.waitForRepeat(GetParam()));
  user.release(GetParam());
  const std::vector<SeenKey> seen = tap.readSeen();
  ASSERT_GE(seen.size(), 3U);
  EXPECT_EQ(describe({seen.front(), seen[1], seen.back()}), key + "+ " + key + "+r " + key + "-");
  const std::vector<ClientEvent> events = client.readAll(user);
  EXPECT_EQ(keysOf(events), "");
  EXPECT_EQ(countOf(events, "FocusOut") + countOf(events, "FocusIn"), 0U);
}

TEST_P(EachShortcutKey, passes_with_a_modifier) {
  swallow(key);
  for (const unsigned modifier : {modifier_keys::shift, modifier_keys::control, modifier_keys::alt,
                                  modifier_keys::altGr, modifier_keys::super}) {
    const bool isAlt = modifier == modifier_keys::alt || modifier == modifier_keys::altGr;
    // The window manager takes Alt+Tab before any window does.
    if (isAlt && GetParam() == keys::tab) continue;
    user.pressEvdev(modifier);
    user.tap(GetParam());
    user.releaseEvdev(modifier);
    EXPECT_THAT(keysOf(received()), testing::HasSubstr(tapOf(GetParam()))) << "with " << modifier;
  }
}

TEST_P(EachShortcutKey, is_swallowed_under_caps_lock_and_num_lock) {
  swallow(key);
  for (const unsigned lock : {modifier_keys::capsLock, modifier_keys::numLock}) {
    user.tapEvdev(lock);
    received();
    user.tap(GetParam());
    EXPECT_EQ(keysOf(received()), "");
  }
}

TEST_F(TapTest, escape_is_seen_and_passes_and_keys_that_are_not_claimed_pass) {
  swallow("50");
  ASSERT_TRUE(tap.command("swallow 50 48 53"));
  user.tap(keys::escape);
  user.tap(keys::a);
  EXPECT_EQ(describe(tap.readSeen()), "53+ 53-");
  user.tap(keys::tab);
  EXPECT_EQ(keysOf(received()),
            tapOf(keys::escape) + " " + tapOf(keys::a) + " " + tapOf(keys::tab));
}

TEST_F(TapTest, a_chosen_key_typed_by_another_program_is_swallowed) {
  swallow("48");
  user.tap(keys::tab, Source::xtest);
  EXPECT_EQ(describe(tap.readSeen()), "48+ 48-");
  EXPECT_EQ(keysOf(client.readAll(user)), "");
}

TEST_F(TapTest, fast_typing_between_shortcuts_arrives_complete_and_in_order) {
  swallow("50 48");
  // What a shortcut cut off comes behind the next keys where the tap gets no processor for as long
  // as they are apart. Here the order is shown, so it gets one before others, if that is allowed.
  const sched_param first{1};
  ::sched_setscheduler(tap.process().id(), SCHED_RR, &first);
  const std::string text = "the quick brown fox jumps over the lazy dog 0123456789 ";
  std::string typed;
  for (int round = 0; round < 6; ++round) {
    for (const char character : text) {
      const bool withShortcut = character == 'o' || character == '5';
      if (withShortcut) user.press(keys::tab);
      // Nobody types faster than a key in 3 ms, be it with all fingers.
      waitFor(std::chrono::milliseconds(3));
      user.type(std::string_view(&character, 1));
      waitFor(std::chrono::milliseconds(3));
      if (withShortcut) user.release(keys::tab);
      typed += character;
    }
  }
  const std::vector<ClientEvent> events = received();
  EXPECT_EQ(textOf(events), typed);
  EXPECT_EQ(countOf(events, "KeyRelease"), typed.size());
  EXPECT_EQ(countOf(events, "FocusOut"), 0U);
}

}  // namespace
}  // namespace vorrin::x11_tests
