#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "service_test.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(MachineService, a_key_held_at_the_start_is_released_for_everybody) {
  keyboard->press(KEY_ENTER);
  ASSERT_TRUE(untilSeen(down(KEY_ENTER)));
  start();
  peer->configure({KEY_TAB});
  EXPECT_FALSE(until([this] { return !keyboardIsFree(); }, 2s));
  keyboard->release(KEY_ENTER);
  EXPECT_TRUE(untilSeen(up(KEY_ENTER)));
  EXPECT_TRUE(until([this] { return !keyboardIsFree(); }));
  EXPECT_THAT(watch.held(), IsEmpty());
}

TEST_F(StartedHelper, typing_across_the_start_loses_nothing) {
  peer->configure({KEY_TAB});
  std::vector<std::string> typed;
  const auto keys = {KEY_A, KEY_S, KEY_D, KEY_F, KEY_G, KEY_H, KEY_J};
  for (const auto end = Clock::now() + 4s; Clock::now() < end;) {
    for (const int key : keys) {
      keyboard->press(key);
      x11_tests::waitFor(10ms);
      watch.look();
      keyboard->release(key);
      x11_tests::waitFor(40ms);
      watch.look();
      typed.insert(typed.end(), {down(key), up(key)});
    }
  }
  EXPECT_FALSE(keyboardIsFree());
  until([&] { return watch.keys().size() >= typed.size(); });
  EXPECT_EQ(watch.keys(), typed);
}

TEST_F(GrabbedKeyboard, unplugging_with_keys_down_leaves_nothing_held) {
  keyboard->press(KEY_LEFTCTRL);
  keyboard->press(KEY_E);
  ASSERT_TRUE(untilSeen(down(KEY_E)));
  keyboard.reset();
  ASSERT_TRUE(until([this] { return !watch.has(ownPlace, keyboardName); }));
  EXPECT_THAT(watch.keys(), Contains(up(KEY_E)));
  EXPECT_THAT(watch.keys(), Contains(up(KEY_LEFTCTRL)));
  EXPECT_THAT(watch.held(), IsEmpty());
  EXPECT_FALSE(peer->isLeft());
}

TEST_F(MachineService, another_program_s_grab_is_reported_and_its_end_too) {
  const int device = watch.device(keyboardPlace, keyboardName);
  ASSERT_EQ(::ioctl(device, EVIOCGRAB, 1), 0);
  start();
  EXPECT_THAT(peer->saidOf<Availability>(), ElementsAre(Availability{Listening::keyboardTaken}));
  ASSERT_EQ(::ioctl(device, EVIOCGRAB, 0), 0);
  EXPECT_TRUE(until([this] { return peer->saidOf<Availability>().back() == Availability{}; }));
}

TEST_F(MachineService, virtual_devices_of_others_are_left_alone) {
  FileDescriptor uinput(::open("/dev/uinput", O_RDWR | O_CLOEXEC));
  ASSERT_TRUE(uinput.isOpen());
  ::ioctl(uinput.get(), UI_SET_EVBIT, EV_KEY);
  for (int key = KEY_ESC; key < KEY_F10; ++key) ::ioctl(uinput.get(), UI_SET_KEYBIT, key);
  uinput_setup setup{};
  std::snprintf(setup.name, sizeof setup.name, "Remapper");
  ASSERT_EQ(::ioctl(uinput.get(), UI_DEV_SETUP, &setup), 0);
  ASSERT_EQ(::ioctl(uinput.get(), UI_DEV_CREATE), 0);
  startAndGrab();
  EXPECT_FALSE(watch.has(ownPlace, "Remapper"));
}

TEST_F(GrabbedKeyboard, a_keyboard_plugged_in_with_a_key_down_is_taken_once_it_is_up) {
  UhidKeyboard second("Second keyboard");
  ASSERT_TRUE(until([this] { return watch.has("test/Second keyboard"); }));
  // The kernel drops what a keyboard says before it is wholly set up. Saying it again changes
  // nothing.
  ASSERT_TRUE(until([&] {
    second.press(KEY_LEFTSHIFT);
    return std::ranges::count(watch.keys(), down(KEY_LEFTSHIFT)) > 0;
  }));
  ASSERT_TRUE(until([this] { return watch.has(ownPlace, "Second keyboard"); }));
  x11_tests::waitFor(2s);
  EXPECT_TRUE(watch.isFree("test/Second keyboard", "Second keyboard"));
  second.release(KEY_LEFTSHIFT);
  EXPECT_TRUE(until([this] { return !watch.isFree("test/Second keyboard", "Second keyboard"); }));
  EXPECT_THAT(watch.held(), IsEmpty());
}

}  // namespace
}  // namespace vorrin::machine
