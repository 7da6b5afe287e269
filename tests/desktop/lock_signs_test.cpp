#include "platform/linux/session/lock_signs.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace vorrin {
namespace {

TEST(LockSignsOnX11, of_a_display_that_cannot_be_reached_are_none) {
  ::setenv("DISPLAY", ":4095", 1);
  LockSignsOnX11 signs;
  for (int i = 0; i < 2; ++i) {
    const LockSigns seen = signs.look();
    EXPECT_FALSE(seen.keyboardIsHeld);
    EXPECT_FALSE(seen.screensAreCovered);
  }
  signs.ask();
  const auto answer = signs.answered();
  ASSERT_TRUE(answer) << "whoever asked would wait for ever";
  EXPECT_FALSE(answer->keyboardIsHeld);
}

}  // namespace
}  // namespace vorrin
