#include <gmock/gmock.h>
#include <linux/input.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
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

TEST_F(GrabbedKeyboard, other_keys_arrive_in_order_and_through_the_clone) {
  keyboard->press(KEY_LEFTSHIFT);
  keyboard->tap(KEY_B);
  keyboard->release(KEY_LEFTSHIFT);
  ASSERT_TRUE(untilSeen(up(KEY_LEFTSHIFT)));
  EXPECT_THAT(watch.keys(),
              ElementsAre(down(KEY_LEFTSHIFT), down(KEY_B), up(KEY_B), up(KEY_LEFTSHIFT)));
  for (const auto& event : watch.seen()) EXPECT_EQ(event.place, ownPlace);
  EXPECT_THAT(helper->said(), IsEmpty());
}

TEST_F(GrabbedKeyboard, a_shortcut_that_the_main_program_claims_is_seen_by_nobody) {
  keyboard->tap(KEY_TAB);
  ASSERT_TRUE(typePassing(KEY_X));
  EXPECT_THAT(watch.keys(), ElementsAre(down(KEY_X), up(KEY_X)));
  for (const auto& event : watch.seen()) {
    EXPECT_FALSE(event.type == EV_MSC && event.value == 0x7002B);
  }
  EXPECT_THAT(helper->said(), ElementsAre(FromHelper(Question{1, KEY_TAB, {}}),
                                          FromHelper(KeyMoved{KEY_TAB, false, false, {}})));
}

TEST_F(GrabbedKeyboard, a_shortcut_that_the_main_program_lets_pass_arrives_in_its_place) {
  helper->verdict = [](const Question&) { return false; };
  keyboard->tap(KEY_A);
  keyboard->tap(KEY_TAB);
  keyboard->tap(KEY_B);
  ASSERT_TRUE(untilSeen(up(KEY_B)));
  EXPECT_THAT(watch.keys(), ElementsAre(down(KEY_A), up(KEY_A), down(KEY_TAB), up(KEY_TAB),
                                        down(KEY_B), up(KEY_B)));
}

TEST_F(GrabbedKeyboard, modifiers_are_told_with_a_shortcut) {
  keyboard->press(KEY_RIGHTALT);
  keyboard->press(KEY_TAB);
  ASSERT_TRUE(until([this] { return !helper->said().empty(); }));
  EXPECT_THAT(helper->said(), ElementsAre(FromHelper(Question{1, KEY_TAB, {.alternate = true}})));
}

TEST_F(GrabbedKeyboard, escape_is_told_and_arrives) {
  ASSERT_TRUE(typePassing(KEY_ESC));
  EXPECT_TRUE(until([this] { return helper->said().size() == 2; }));
  EXPECT_THAT(helper->said(), ElementsAre(FromHelper(KeyMoved{KEY_ESC, true, false, {}}),
                                          FromHelper(KeyMoved{KEY_ESC, false, false, {}})));
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
  helper->post(KEY_5);
  const auto before = repeats();
  EXPECT_TRUE(until([&] { return repeats() >= before + 3; }));
}

TEST_F(GrabbedKeyboard, a_claimed_shortcut_held_down_repeats_for_nobody) {
  keyboard->press(KEY_TAB);
  EXPECT_FALSE(until([this] { return !watch.keys().empty(); }, 700ms));
  keyboard->release(KEY_TAB);
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

TEST_F(GrabbedKeyboard, fifty_keys_a_second_arrive_complete_and_in_order) {
  std::vector<std::string> typed;
  auto next = Clock::now();
  const auto press = [&](int key, bool isDown) {
    isDown ? keyboard->press(key) : keyboard->release(key);
    typed.push_back(isDown ? down(key) : up(key));
    next += 10ms;
    while (Clock::now() < next) turn();
  };
  for (int i = 0; i < 200; ++i) {
    const int key = KEY_A + i % 9;
    press(key, true);
    press(key, false);
  }
  until([&] { return watch.keys().size() >= typed.size(); });
  EXPECT_EQ(watch.keys(), typed);
}

TEST_F(GrabbedKeyboard, a_flood_of_lost_events_leaves_nothing_stuck_and_toggles_nothing) {
  keyboard->press(KEY_LEFTCTRL);
  ASSERT_TRUE(untilSeen(down(KEY_LEFTCTRL)));
  const pid_t worker = helper->workingPart();
  ASSERT_GT(worker, 0);
  ::kill(worker, SIGSTOP);
  for (int i = 0; i < 100; ++i) keyboard->tap(KEY_A);
  keyboard->press(KEY_TAB);
  keyboard->release(KEY_LEFTCTRL);
  keyboard->press(KEY_LEFTSHIFT);
  ::kill(worker, SIGCONT);
  ASSERT_TRUE(untilSeen(down(KEY_LEFTSHIFT)));
  keyboard->release(KEY_TAB);
  keyboard->release(KEY_LEFTSHIFT);
  ASSERT_TRUE(untilSeen(up(KEY_LEFTSHIFT)));
  EXPECT_THAT(watch.keys(), Contains(up(KEY_LEFTCTRL)));
  EXPECT_THAT(watch.held(), IsEmpty());
  EXPECT_THAT(helper->said(), IsEmpty());
}

}  // namespace
}  // namespace vorrin::machine
