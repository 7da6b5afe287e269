#include "platform/linux/input/key_codes.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

TEST(KeyCodesTest, the_keys_of_the_macros_have_their_positions) {
  EXPECT_EQ(evdevCode(50), KEY_GRAVE);
  EXPECT_EQ(evdevCode(48), KEY_TAB);
  EXPECT_EQ(evdevCode(97), KEY_F6);
  EXPECT_EQ(evdevCode(98), KEY_F7);
  EXPECT_EQ(evdevCode(100), KEY_F8);
  EXPECT_EQ(evdevCode(101), KEY_F9);
  EXPECT_EQ(evdevCode(53), KEY_ESC);
}

TEST(KeyCodesTest, every_code_leads_back_to_its_key_and_unknown_ones_to_none) {
  for (const KeyNames& key : keyTable) {
    EXPECT_EQ(evdevCode(key.virtualKey), key.evdev);
    EXPECT_EQ(virtualKeyOfEvdev(key.evdev), key.virtualKey);
  }
  EXPECT_FALSE(evdevCode(0x37));
  EXPECT_FALSE(virtualKeyOfEvdev(KEY_LEFTSHIFT));
}

}  // namespace
}  // namespace vorrin
