#include "platform/linux/input/x11/keyboard_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vorrin::x11 {
namespace {

using testing::UnorderedElementsAre;

constexpr unsigned lock = 2;

TEST(ModifiersTest, a_key_alone_may_have_every_mixture_of_the_locks_there_are) {
  EXPECT_THAT(lockStates(lock | 0x10), UnorderedElementsAre(0U, lock, 0x10U, lock | 0x10U));
  EXPECT_THAT(lockStates(lock), UnorderedElementsAre(0U, lock));
}

}  // namespace
}  // namespace vorrin::x11
