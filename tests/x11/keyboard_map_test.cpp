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

TEST(ModifiersTest, each_modifier_shows_its_flag_and_num_lock_and_scroll_lock_show_none) {
  const std::pair<unsigned, std::uint64_t> cases[] = {
      {0, 0},
      {shift, event_flags::maskShift},
      {lock, event_flags::maskAlphaShift},
      {control, event_flags::maskControl},
      {0x08, event_flags::maskAlternate},
      {0x80, event_flags::maskAlternate},
      {0x40, event_flags::maskCommand},
      {0x30, 0},
      {shift | control | 0x40,
       event_flags::maskShift | event_flags::maskControl | event_flags::maskCommand}};
  ModifierMasks masks = usual;
  masks.scrollLock = 0x20;
  for (const auto& [state, flags] : cases) EXPECT_EQ(eventFlags(state, masks), flags) << state;
}

TEST(ModifiersTest, a_key_alone_may_have_every_mixture_of_the_locks_there_are) {
  EXPECT_THAT(lockStates(usual), UnorderedElementsAre(0U, lock, 0x10U, lock | 0x10U));
  EXPECT_THAT(lockStates({}), UnorderedElementsAre(0U, lock));
}

TEST(ModifiersTest, a_lock_that_shares_its_bit_with_a_modifier_does_not_count_as_alone) {
  const ModifierMasks masks{.alternate = 0x8, .command = 0, .numLock = 0x8, .scrollLock = 0};
  EXPECT_THAT(lockStates(masks), UnorderedElementsAre(0U, lock));
}

}  // namespace
}  // namespace vorrin::x11
