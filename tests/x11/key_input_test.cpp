#include <gtest/gtest.h>
// After the test framework, whose names Xlib's macros would break.
#include "platform/linux/input/x11/key_input.h"

namespace vorrin::x11 {
namespace {

XIRawEvent rawEvent(int type) {
  XIRawEvent event{};
  event.evtype = type;
  event.deviceid = 7;
  event.sourceid = 7;
  event.detail = 49;
  event.serial = 1234;
  event.time = 5678;
  return event;
}

TEST(KeyInputTest, a_raw_event_is_read_whole) {
  const KeyInput input = keyInput(rawEvent(XI_RawKeyPress));
  EXPECT_EQ(input.device, 7);
  EXPECT_EQ(input.keycode, 49U);
  EXPECT_EQ(input.serial, 1234U);
  EXPECT_EQ(input.time, 5678U);
  EXPECT_TRUE(input.down);
  EXPECT_FALSE(input.repeat);
  EXPECT_FALSE(keyInput(rawEvent(XI_RawKeyRelease)).down);
}

TEST(KeyInputTest, the_masters_copy_is_told_from_the_keyboards_own_event) {
  XIRawEvent event = rawEvent(XI_RawKeyPress);
  EXPECT_TRUE(isOfSlave(keyInput(event)));
  event.deviceid = 3;
  EXPECT_FALSE(isOfSlave(keyInput(event)));
}

TEST(KeyInputTest, a_repeat_of_a_held_back_key_is_one) {
  XIDeviceEvent event{};
  event.evtype = XI_KeyPress;
  event.detail = 49;
  EXPECT_FALSE(keyInput(event).repeat);
  event.flags = XIKeyRepeat;
  EXPECT_TRUE(keyInput(event).repeat);
}

TEST(KeyInputTest, a_tap_shows_code_flags_and_user_data) {
  const TapEvent event = tapEvent(keyInput(rawEvent(XI_RawKeyPress)), 50, 0x20000, 7);
  EXPECT_EQ(event.type, EventType::keyDown);
  EXPECT_EQ(event.keyCode, 50);
  EXPECT_EQ(event.autorepeat, 0);
  EXPECT_EQ(event.flags, 0x20000U);
  EXPECT_EQ(event.userData, 7);
}

TEST(KeyInputTest, a_tap_shows_a_release_and_a_repeat) {
  EXPECT_EQ(tapEvent(keyInput(rawEvent(XI_RawKeyRelease)), 50, 0, 0).type, EventType::keyUp);
  EXPECT_EQ(tapEvent({.down = true, .repeat = true}, 50, 0, 0).autorepeat, 1);
}

}  // namespace
}  // namespace vorrin::x11
