#include "platform/linux/input/x11/keyboard_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/event_tap.h"

namespace vorrin::x11 {
namespace {

using testing::UnorderedElementsAre;

constexpr unsigned shift = 1;
constexpr unsigned lock = 2;
constexpr unsigned control = 4;
constexpr ModifierMasks usual{.alternate = 0x88, .command = 0x40, .numLock = 0x10, .scrollLock = 0};

TEST(ModifiersTest, no_modifier_shows_no_flag) {
  EXPECT_EQ(eventFlags(0, usual), 0U);
}

TEST(ModifiersTest, each_modifier_shows_its_flag) {
  EXPECT_EQ(eventFlags(shift, usual), event_flags::maskShift);
  EXPECT_EQ(eventFlags(lock, usual), event_flags::maskAlphaShift);
  EXPECT_EQ(eventFlags(control, usual), event_flags::maskControl);
  EXPECT_EQ(eventFlags(0x08, usual), event_flags::maskAlternate);
  EXPECT_EQ(eventFlags(0x80, usual), event_flags::maskAlternate);
  EXPECT_EQ(eventFlags(0x40, usual), event_flags::maskCommand);
}

TEST(ModifiersTest, modifiers_add_up) {
  EXPECT_EQ(eventFlags(shift | control | 0x40, usual),
            event_flags::maskShift | event_flags::maskControl | event_flags::maskCommand);
}

TEST(ModifiersTest, num_lock_and_scroll_lock_show_no_flag) {
  const ModifierMasks masks{.alternate = 0x8, .command = 0x40, .numLock = 0x10, .scrollLock = 0x20};
  EXPECT_EQ(eventFlags(0x30, masks), 0U);
}

TEST(ModifiersTest, a_key_alone_may_have_every_mixture_of_locks) {
  EXPECT_THAT(lockStates(usual), UnorderedElementsAre(0U, lock, 0x10U, lock | 0x10U));
}

TEST(ModifiersTest, without_num_lock_only_caps_lock_remains) {
  EXPECT_THAT(lockStates({}), UnorderedElementsAre(0U, lock));
}

TEST(ModifiersTest, a_lock_that_shares_its_bit_with_a_modifier_does_not_count_as_alone) {
  const ModifierMasks masks{.alternate = 0x8, .command = 0, .numLock = 0x8, .scrollLock = 0};
  EXPECT_THAT(lockStates(masks), UnorderedElementsAre(0U, lock));
}

}  // namespace
}  // namespace vorrin::x11
