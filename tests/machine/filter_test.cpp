// The real helper between a keyboard of the kernel's and a reader of all devices. Runs in the test
// machine, as root.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "event_watch.h"
#include "helper_process.h"
#include "uhid_keyboard.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Clock = std::chrono::steady_clock;

constexpr const char* keyboardName = "Test keyboard";
constexpr const char* ownPlace = "vorrin-input-helper";
constexpr auto patience = 15s;

std::string down(int key) {
  return std::to_string(key) + " 1";
}
std::string up(int key) {
  return std::to_string(key) + " 0";
}

class MachineFilter : public testing::Test {
 protected:
  MachineFilter() {
    keyboard.emplace(keyboardName);
    EXPECT_TRUE(until([this] { return watch.has(keyboardPlace); }));
  }

  void turn() {
    watch.look();
    if (helper) helper->listen();
    std::this_thread::sleep_for(1ms);
  }

  /// Whether `condition` comes true before the tests lose patience.
  bool until(const std::function<bool()>& condition, std::chrono::milliseconds limit = patience) {
    for (const auto end = Clock::now() + limit; Clock::now() < end;) {
      turn();
      if (condition()) return true;
    }
    return false;
  }

  bool untilSeen(const std::string& key) {
    return until([&] { return std::ranges::count(watch.keys(), key) > 0; });
  }

  /// Whether another program would get the keyboard now.
  bool keyboardIsFree() {
    const int device = watch.device(keyboardPlace, keyboardName);
    if (device < 0 || ::ioctl(device, EVIOCGRAB, 1) != 0) return false;
    ::ioctl(device, EVIOCGRAB, 0);
    return true;
  }

  void start() {
    helper = std::make_unique<HelperProcess>();
    ASSERT_TRUE(until([this] { return !helper->saidOf<Availability>().empty(); })) << helper->log();
  }

  void startAndGrab() {
    start();
    helper->configure({KEY_TAB});
    ASSERT_TRUE(until([this] { return !keyboardIsFree(); })) << helper->log();
    forget();
  }

  void forget() {
    watch.forget();
    helper->forget();
  }

  /// Types a key and waits until it has come through.
  bool typePassing(int key) {
    keyboard->tap(key);
    return untilSeen(up(key));
  }

  bool untilHelperEnded(std::chrono::milliseconds limit = patience) {
    return until([this] { return helper->ended(); }, limit);
  }

  /// The keyboard works for everybody, straight from its own device.
  void expectKeyboardGivenBack() {
    EXPECT_TRUE(until([this] { return !watch.has(ownPlace, keyboardName); }));
    EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
    watch.forget();
    EXPECT_TRUE(typePassing(KEY_X));
    EXPECT_EQ(watch.seen().back().place, keyboardPlace);
    EXPECT_THAT(watch.held(), IsEmpty());
  }

  const std::string keyboardPlace = "test/" + std::string(keyboardName);
  EventWatch watch;
  std::optional<UhidKeyboard> keyboard;
  std::unique_ptr<HelperProcess> helper;
};

/// With a helper that has said hello.
class StartedHelper : public MachineFilter {
 protected:
  void SetUp() override { start(); }
};

/// With a helper that holds the keyboard, Tab as a shortcut, and an empty record.
class GrabbedKeyboard : public MachineFilter {
 protected:
  void SetUp() override { startAndGrab(); }
};

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
      until([] { return false; }, 10ms);
      keyboard->release(key);
      until([] { return false; }, 40ms);
      typed.insert(typed.end(), {down(key), up(key)});
    }
  }
  EXPECT_FALSE(keyboardIsFree());
  until([&] { return watch.keys().size() >= typed.size(); });
  EXPECT_EQ(watch.keys(), typed);
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

TEST_F(GrabbedKeyboard, a_keyboard_plugged_in_later_is_taken_too) {
  UhidKeyboard second("Second keyboard");
  ASSERT_TRUE(until([this] { return watch.has(ownPlace, "Second keyboard"); }));
  const int device = watch.device("test/Second keyboard", "Second keyboard");
  ASSERT_TRUE(until(
      [&] { return ::ioctl(device, EVIOCGRAB, 1) != 0 || ::ioctl(device, EVIOCGRAB, 0) != 0; }));
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

TEST_F(GrabbedKeyboard, a_key_passes_and_the_tap_is_disabled_when_no_answer_comes) {
  helper->verdict = [](const Question&) { return std::nullopt; };
  keyboard->press(KEY_TAB);
  ASSERT_TRUE(untilSeen(down(KEY_TAB)));
  EXPECT_TRUE(until([this] { return !helper->saidOf<Disabled>().empty(); }));
  EXPECT_EQ(helper->saidOf<Disabled>().front().reason, DisableReason::noAnswer);
  keyboard->release(KEY_TAB);
  forget();
  ASSERT_TRUE(typePassing(KEY_TAB));
  EXPECT_THAT(helper->said(), IsEmpty());
}

TEST_F(GrabbedKeyboard, the_keyboards_are_given_back_when_no_shortcut_is_wanted_any_more) {
  helper->configure({});
  EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
  watch.forget();
  EXPECT_TRUE(typePassing(KEY_A));
  EXPECT_EQ(watch.keys().size(), 2U);
}

TEST_F(GrabbedKeyboard, the_end_of_the_main_program_gives_the_keyboards_back) {
  keyboard->press(KEY_LEFTCTRL);
  ASSERT_TRUE(untilSeen(down(KEY_LEFTCTRL)));
  helper->hangUp();
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_THAT(watch.keys(), Contains(up(KEY_LEFTCTRL)));
  keyboard->release(KEY_LEFTCTRL);
  expectKeyboardGivenBack();
}

TEST_F(GrabbedKeyboard, killing_the_helper_gives_the_keyboards_back) {
  keyboard->press(KEY_LEFTCTRL);
  keyboard->press(KEY_E);
  ASSERT_TRUE(untilSeen(down(KEY_E)));
  ::kill(helper->workingPart(), SIGKILL);
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_TRUE(untilSeen(up(KEY_LEFTCTRL)));
  keyboard->release(KEY_E);
  keyboard->release(KEY_LEFTCTRL);
  expectKeyboardGivenBack();
}

TEST_F(GrabbedKeyboard, killing_the_privileged_part_gives_the_keyboards_back) {
  ::kill(helper->privilegedPart(), SIGKILL);
  EXPECT_TRUE(untilHelperEnded());
  expectKeyboardGivenBack();
}

TEST_F(GrabbedKeyboard, a_helper_that_hangs_is_ended_by_its_watchdog) {
  keyboard->press(KEY_LEFTCTRL);
  ASSERT_TRUE(untilSeen(down(KEY_LEFTCTRL)));
  ::kill(helper->workingPart(), SIGSTOP);
  EXPECT_TRUE(untilHelperEnded(6s));
  EXPECT_THAT(helper->log(), HasSubstr("hangs"));
  keyboard->release(KEY_LEFTCTRL);
  expectKeyboardGivenBack();
}

TEST_F(GrabbedKeyboard, keys_go_on_when_the_privileged_part_hangs) {
  ::kill(helper->privilegedPart(), SIGSTOP);
  EXPECT_TRUE(typePassing(KEY_A));
  ::kill(helper->privilegedPart(), SIGCONT);
}

TEST_F(GrabbedKeyboard, the_panic_chord_ends_the_helper) {
  keyboard->press(KEY_ESC);
  keyboard->press(KEY_BACKSPACE);
  keyboard->press(KEY_ENTER);
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_THAT(helper->saidOf<Ending>(), ElementsAre(Ending{EndReason::panicChord}));
  for (const int key : {KEY_ESC, KEY_BACKSPACE, KEY_ENTER}) keyboard->release(key);
  expectKeyboardGivenBack();
}

TEST_F(StartedHelper, posted_digits_and_clicks_come_from_devices_of_their_own) {
  helper->post(KEY_0);
  helper->post(0);
  ASSERT_TRUE(untilSeen(up(BTN_LEFT)));
  EXPECT_THAT(watch.keys(), ElementsAre(down(KEY_0), up(KEY_0), down(BTN_LEFT), up(BTN_LEFT)));
  EXPECT_EQ(watch.seen().front().device, "Vorrin keyboard");
  EXPECT_EQ(watch.seen().back().device, "Vorrin pointer");
  EXPECT_EQ(watch.seen().back().place, ownPlace);
}

TEST_F(StartedHelper, every_digit_can_be_posted) {
  std::vector<std::string> expected;
  for (std::uint16_t key = KEY_1; key <= KEY_0; ++key) {
    helper->post(key);
    expected.insert(expected.end(), {down(key), up(key)});
  }
  ASSERT_TRUE(untilSeen(up(KEY_0)));
  EXPECT_EQ(watch.keys(), expected);
}

TEST_F(StartedHelper, the_press_and_the_release_of_a_click_are_two_frames) {
  helper->post(0);
  ASSERT_TRUE(untilSeen(up(BTN_LEFT)));
  std::vector<int> types;
  for (const auto& event : watch.seen()) types.push_back(event.type);
  EXPECT_THAT(types, ElementsAre(EV_KEY, EV_SYN, EV_KEY, EV_SYN));
}

TEST_F(StartedHelper, a_click_left_down_is_released_at_the_end) {
  helper->say(Post{1, {{{0, true}}}});
  ASSERT_TRUE(untilSeen(down(BTN_LEFT)));
  helper->hangUp();
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_TRUE(untilSeen(up(BTN_LEFT)));
}

TEST_F(StartedHelper, a_thousand_posted_clicks_all_arrive) {
  // The kernel keeps 64 events for a reader that is behind, so this one never is by much.
  constexpr std::size_t ahead = 8;
  for (std::size_t click = 0; click < 1000; ++click) {
    helper->post(0);
    // A key and the end of its frame, for the press and for the release.
    const auto due = click < ahead ? 0 : 4 * (click - ahead);
    ASSERT_TRUE(until([&] { return watch.seen().size() >= due; }));
  }
  EXPECT_TRUE(until([this] { return watch.seen().size() == 4000; }));
  EXPECT_EQ(std::ranges::count(watch.keys(), down(BTN_LEFT)), 1000);
}

TEST_F(MachineFilter, words_without_meaning_end_the_helper_and_free_the_keyboards) {
  const auto whole = encode(ToHelper(Configure{true, 1, {KEY_TAB}}));
  const std::string configure(reinterpret_cast<const char*>(whole.bytes.data()), whole.size);
  const std::string bad[] = {"x", std::string(60'000, 'x'), configure.substr(0, 7),
                             configure + "more", std::string("\x02\0\xFF\xFF\1\1\x0F\0", 8)};
  for (const auto& words : bad) {
    SCOPED_TRACE(words.size());
    startAndGrab();
    helper->sayBytes(words);
    EXPECT_TRUE(untilHelperEnded());
    EXPECT_EQ(helper->status(), 3);
    EXPECT_THAT(helper->log(), HasSubstr("no meaning"));
    expectKeyboardGivenBack();
  }
}

TEST_F(StartedHelper, a_second_hello_ends_the_helper) {
  helper->say(Hello{});
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_EQ(helper->status(), 3);
}

TEST_F(MachineFilter, a_message_before_the_hello_ends_the_helper) {
  helper = std::make_unique<HelperProcess>(false);
  helper->configure({KEY_TAB});
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_EQ(helper->status(), 3);
}

TEST_F(GrabbedKeyboard, an_answer_to_no_question_ends_the_helper) {
  helper->say(Verdict{99, true});
  EXPECT_TRUE(untilHelperEnded());
  expectKeyboardGivenBack();
}

TEST_F(MachineFilter, a_main_program_of_another_version_is_told_so_and_left) {
  helper = std::make_unique<HelperProcess>(false);
  helper->say(Hello{version + 1});
  EXPECT_TRUE(untilHelperEnded());
  helper->listen();
  EXPECT_THAT(helper->said(), ElementsAre(FromHelper(Hello{})));
  EXPECT_THAT(helper->log(), HasSubstr("another version"));
}

}  // namespace
}  // namespace vorrin::machine
