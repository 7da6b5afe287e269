#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "filter_test.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(MachineFilter, a_key_held_at_the_start_is_released_for_everybody) {
  keyboard->press(KEY_ENTER);
  ASSERT_TRUE(untilSeen(down(KEY_ENTER)));
  start();
  helper->configure({KEY_TAB});
  EXPECT_FALSE(until([this] { return !keyboardIsFree(); }, 2s));
  keyboard->release(KEY_ENTER);
  EXPECT_TRUE(untilSeen(up(KEY_ENTER)));
  EXPECT_TRUE(until([this] { return !keyboardIsFree(); }));
  EXPECT_THAT(watch.held(), IsEmpty());
}

TEST_F(MachineFilter, the_clone_is_there_a_second_before_the_keyboard_is_taken) {
  helper = std::make_unique<HelperProcess>();
  ASSERT_TRUE(until([this] { return watch.has(ownPlace, keyboardName); }));
  const auto cloned = Clock::now();
  helper->configure({KEY_TAB});
  ASSERT_TRUE(until([this] { return !keyboardIsFree(); }));
  EXPECT_GE(Clock::now() - cloned, 900ms);
}

TEST_F(StartedHelper, typing_across_the_start_loses_nothing) {
  helper->configure({KEY_TAB});
  std::vector<std::string> typed;
  const auto keys = {KEY_A, KEY_S, KEY_D, KEY_F, KEY_G, KEY_H, KEY_J};
  for (const auto end = Clock::now() + 4s; Clock::now() < end;) {
    for (const int key : keys) {
      keyboard->press(key);
      pass(10ms);
      keyboard->release(key);
      pass(40ms);
      typed.insert(typed.end(), {down(key), up(key)});
    }
  }
  EXPECT_FALSE(keyboardIsFree());
  until([&] { return watch.keys().size() >= typed.size(); });
  EXPECT_EQ(watch.keys(), typed);
}

TEST_F(GrabbedKeyboard, a_keyboard_plugged_in_later_is_taken_too) {
  UhidKeyboard second("Second keyboard");
  ASSERT_TRUE(until([this] { return watch.has(ownPlace, "Second keyboard"); }));
  ASSERT_TRUE(until([this] { return !watch.isFree("test/Second keyboard", "Second keyboard"); }));
  second.tap(KEY_TAB);
  EXPECT_TRUE(until([this] { return !helper->saidOf<Question>().empty(); }));
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
  EXPECT_FALSE(helper->ended());
}

TEST_F(GrabbedKeyboard, unplugging_with_a_shortcut_down_tells_its_release) {
  keyboard->press(KEY_TAB);
  ASSERT_TRUE(until([this] { return !helper->saidOf<Question>().empty(); }));
  keyboard.reset();
  EXPECT_TRUE(until([this] { return !helper->saidOf<KeyMoved>().empty(); }));
  EXPECT_EQ(helper->saidOf<KeyMoved>().front(), (KeyMoved{KEY_TAB, false, false, {}}));
}

TEST_F(MachineFilter, another_program_s_grab_is_reported_and_its_end_too) {
  const int device = watch.device(keyboardPlace, keyboardName);
  ASSERT_EQ(::ioctl(device, EVIOCGRAB, 1), 0);
  start();
  EXPECT_THAT(helper->saidOf<Availability>(), ElementsAre(Availability{false}));
  ASSERT_EQ(::ioctl(device, EVIOCGRAB, 0), 0);
  EXPECT_TRUE(until([this] { return helper->saidOf<Availability>().back().available; }));
}

TEST_F(GrabbedKeyboard, of_two_helpers_the_second_waits_for_the_end_of_the_first) {
  auto first = std::move(helper);
  start();
  EXPECT_THAT(helper->saidOf<Availability>(), ElementsAre(Availability{false}));
  first.reset();
  EXPECT_TRUE(until([this] { return helper->saidOf<Availability>().back().available; }));
  helper->configure({KEY_TAB});
  EXPECT_TRUE(until([this] { return !keyboardIsFree(); }));
}

TEST_F(MachineFilter, virtual_devices_of_others_are_left_alone) {
  FileDescriptor uinput(::open("/dev/uinput", O_RDWR | O_CLOEXEC));
  ASSERT_TRUE(uinput.isOpen());
  ::ioctl(uinput.number(), UI_SET_EVBIT, EV_KEY);
  for (int key = KEY_ESC; key < KEY_F10; ++key) ::ioctl(uinput.number(), UI_SET_KEYBIT, key);
  uinput_setup setup{};
  std::snprintf(setup.name, sizeof setup.name, "Remapper");
  ASSERT_EQ(::ioctl(uinput.number(), UI_DEV_SETUP, &setup), 0);
  ASSERT_EQ(::ioctl(uinput.number(), UI_DEV_CREATE), 0);
  startAndGrab();
  EXPECT_FALSE(watch.has(ownPlace, "Remapper"));
}

TEST_F(GrabbedKeyboard, the_keyboards_are_given_back_when_no_shortcut_is_wanted_any_more) {
  helper->configure({});
  EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
  watch.forget();
  EXPECT_TRUE(typePassing(KEY_A));
  EXPECT_EQ(watch.keys().size(), 2U);
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
  pass(2s);
  EXPECT_TRUE(watch.isFree("test/Second keyboard", "Second keyboard"));
  second.release(KEY_LEFTSHIFT);
  EXPECT_TRUE(until([this] { return !watch.isFree("test/Second keyboard", "Second keyboard"); }));
  EXPECT_THAT(watch.held(), IsEmpty());
}

}  // namespace
}  // namespace vorrin::machine
