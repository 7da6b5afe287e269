#include <gmock/gmock.h>
#include <linux/input.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

#include "service_test.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(GrabbedKeyboard, other_keys_arrive_in_order_and_through_the_clone) {
  keyboard->press(KEY_LEFTSHIFT);
  keyboard->tap(KEY_B);
  keyboard->release(KEY_LEFTSHIFT);
  ASSERT_TRUE(untilSeen(up(KEY_LEFTSHIFT)));
  EXPECT_THAT(watch.keys(),
              ElementsAre(down(KEY_LEFTSHIFT), down(KEY_B), up(KEY_B), up(KEY_LEFTSHIFT)));
  for (const auto& event : watch.seen()) EXPECT_EQ(event.place, ownPlace);
  EXPECT_THAT(peer->said(), IsEmpty());
}

TEST_F(GrabbedKeyboard, a_held_key_repeats_once_for_all) {
  keyboard->press(KEY_E);
  ASSERT_TRUE(until([this] { return watch.keys().size() >= 8; }));
  keyboard->release(KEY_E);
  ASSERT_TRUE(untilSeen(up(KEY_E)));
  const auto keys = watch.keys();
  EXPECT_EQ(keys.front(), down(KEY_E));
  EXPECT_EQ(keys.back(), up(KEY_E));
  EXPECT_EQ(std::ranges::count(keys, std::to_string(KEY_E) + " 2"), std::ssize(keys) - 2);
}

TEST_F(GrabbedKeyboard, a_posted_digit_does_not_end_the_repeating_of_a_held_key) {
  keyboard->press(KEY_E);
  const auto repeats = [this] {
    return std::ranges::count(watch.keys(), std::to_string(KEY_E) + " 2");
  };
  ASSERT_TRUE(until([&] { return repeats() >= 2; }));
  peer->post(KEY_5);
  const auto before = repeats();
  EXPECT_TRUE(until([&] { return repeats() >= before + 3; }));
}

TEST_F(GrabbedKeyboard, lights_set_by_others_light_up_on_the_keyboard) {
  const int clone = watch.device(ownPlace, keyboardName);
  const input_event light[] = {{{}, EV_LED, LED_CAPSL, 1}, {{}, EV_SYN, SYN_REPORT, 0}};
  ASSERT_EQ(::write(clone, light, sizeof light), ssize_t{sizeof light});
  EXPECT_TRUE(until([this] { return keyboard->lights() == 2U; }));
}

TEST_F(GrabbedKeyboard, media_keys_and_pointer_parts_arrive) {
  ASSERT_TRUE(typePassing(KEY_VOLUMEUP));
  ASSERT_TRUE(typePassing(BTN_LEFT));
  keyboard->move(5, -3);
  EXPECT_TRUE(until([this] {
    return std::ranges::any_of(watch.seen(), [](const SeenEvent& event) {
      return event.place == ownPlace && event.type == EV_REL && event.code == REL_Y &&
             event.value == -3;
    });
  }));
}

TEST_F(GrabbedKeyboard, one_that_lost_events_is_taken_up_anew_with_nothing_stuck_or_toggled) {
  keyboard->press(KEY_LEFTCTRL);
  ASSERT_TRUE(untilSeen(down(KEY_LEFTCTRL)));
  // Not for long, or it is taken for one that hangs.
  const pid_t process = service();
  ASSERT_EQ(::kill(process, SIGSTOP), 0);
  for (int i = 0; i < 100; ++i) keyboard->tap(KEY_A);
  keyboard->tap(KEY_TAB);
  keyboard->release(KEY_LEFTCTRL);
  ASSERT_EQ(::kill(process, SIGCONT), 0);
  ASSERT_TRUE(until([this] { return keyboardIsFree(); }));
  ASSERT_TRUE(until([this] { return !keyboardIsFree(); }));
  EXPECT_THAT(watch.held(), IsEmpty());
  EXPECT_THAT(peer->said(), IsEmpty());
}

TEST_F(StartedHelper, every_digit_can_be_posted) {
  std::vector<std::string> expected;
  for (std::uint8_t key = KEY_1; key <= KEY_0; ++key) {
    peer->post(key);
    expected.insert(expected.end(), {down(key), up(key)});
  }
  ASSERT_TRUE(untilSeen(up(KEY_0)));
  EXPECT_EQ(watch.keys(), expected);
  EXPECT_EQ(watch.seen().front().device, "Vorrin keyboard");
  EXPECT_EQ(watch.seen().front().place, ownPlace);
}

}  // namespace
}  // namespace vorrin::machine
