#include "platform/linux/input_helper/filter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <set>
#include <span>
#include <utility>
#include <variant>
#include <vector>

namespace vorrin::input_helper {
namespace {

using namespace helper_protocol;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr KeyboardId board = 3;
constexpr KeyboardId otherBoard = 4;

InputEvent key(int code, int value) {
  return {EV_KEY, static_cast<std::uint16_t>(code), value};
}
InputEvent scanCode(int value) {
  return {EV_MSC, MSC_SCAN, value};
}

/// A filter whose world is recorded, with the typing, the clock and the main program's answers as
/// the tests have them.
class FilterTest : public testing::Test {
 protected:
  FilterTest() {
    filter.addKeyboard(board, {}, now);
    filter.addKeyboard(otherBoard, {}, now);
    filter.announce(now);
  }

  /// Lets time pass until `later` has gone by, serving every deadline on the way.
  void pass(milliseconds later) {
    const auto end = now + later;
    for (auto due = filter.nextDeadline(); due && *due <= end; due = filter.nextDeadline()) {
      now = std::max(now, *due) + milliseconds(1);
      filter.advance(now);
    }
    now = end;
  }

  void configure(std::initializer_list<std::uint16_t> keys, bool enabled = true) {
    Configure configuration{enabled, static_cast<std::uint8_t>(keys.size()), {}};
    std::copy(keys.begin(), keys.end(), configuration.keys.begin());
    filter.configure(configuration, now);
  }

  /// The state in which the tests begin that are about a grabbed keyboard.
  void grabWithTab() {
    configure({KEY_TAB});
    pass(Filter::startGap + milliseconds(1));
    ASSERT_THAT(grabbed, ElementsAre(board, otherBoard));
    forget();
  }

  void receive(Frame frame, KeyboardId id = board) {
    filter.receive(id, std::move(frame), now, now);
  }
  void press(int code, KeyboardId id = board) { receive({key(code, 1)}, id); }
  void release(int code, KeyboardId id = board) { receive({key(code, 0)}, id); }

  bool answer(bool swallow) {
    const auto question = std::get<Question>(sent.back());
    return filter.answer({question.number, swallow}, now);
  }

  void forget() {
    emitted.clear();
    sent.clear();
  }

  Moment now{milliseconds(1'000'000)};
  std::set<KeyboardId> grabbed;
  std::set<KeyboardId> busy;
  std::vector<Frame> emitted;
  std::vector<FromHelper> sent;
  bool panicked = false;
  Filter filter{{
      .grab =
          [this](KeyboardId id) {
            if (busy.contains(id)) return GrabResult{GrabOutcome::busy, now};
            grabbed.insert(id);
            return GrabResult{GrabOutcome::grabbed, now};
          },
      .ungrab =
          [this](KeyboardId id) {
            grabbed.erase(id);
            return now;
          },
      .emit =
          [this](KeyboardId, std::span<const InputEvent> frame) {
            emitted.emplace_back(frame.begin(), frame.end());
          },
      .send = [this](const FromHelper& message) { sent.push_back(message); },
      .panic = [this] { panicked = true; },
  }};
};

TEST_F(FilterTest, the_start_says_that_the_keyboards_can_be_held) {
  EXPECT_THAT(sent, ElementsAre(FromHelper(Availability{true})));
  EXPECT_THAT(grabbed, IsEmpty());
}

TEST_F(FilterTest, nothing_is_grabbed_before_a_shortcut_is_wanted) {
  pass(milliseconds(5000));
  EXPECT_THAT(grabbed, IsEmpty());
}

TEST_F(FilterTest, nothing_is_grabbed_before_compositors_could_open_the_clone) {
  configure({KEY_TAB});
  pass(Filter::startGap - milliseconds(1));
  EXPECT_THAT(grabbed, IsEmpty());
  pass(milliseconds(2));
  EXPECT_THAT(grabbed, ElementsAre(board, otherBoard));
}

TEST_F(FilterTest, a_keyboard_is_not_grabbed_while_one_of_its_keys_is_down) {
  press(KEY_ENTER);
  configure({KEY_TAB});
  pass(milliseconds(5000));
  EXPECT_THAT(grabbed, ElementsAre(otherBoard));
  release(KEY_ENTER);
  pass(Filter::quietTime);
  EXPECT_THAT(grabbed, ElementsAre(board, otherBoard));
}

TEST_F(FilterTest, a_key_held_when_the_keyboard_is_found_is_waited_for) {
  KeySet down;
  down.set(KEY_A);
  filter.addKeyboard(7, down, now);
  grabWithTab();
  EXPECT_FALSE(grabbed.contains(7));
  release(KEY_A, 7);
  pass(Filter::quietTime);
  EXPECT_TRUE(grabbed.contains(7));
}

TEST_F(FilterTest, a_keyboard_is_grabbed_in_a_pause_of_the_typing) {
  pass(Filter::startGap);
  press(KEY_A);
  release(KEY_A);
  configure({KEY_TAB});
  EXPECT_FALSE(grabbed.contains(board));
  pass(Filter::quietTime);
  EXPECT_TRUE(grabbed.contains(board));
}

TEST_F(FilterTest, typing_without_a_pause_delays_the_grab_for_a_bounded_time) {
  pass(Filter::startGap);
  press(KEY_A);
  release(KEY_A);
  configure({KEY_TAB});
  auto typed = milliseconds(0);
  for (; !grabbed.contains(board); typed += milliseconds(20)) {
    ASSERT_LT(typed, Filter::longestWait + milliseconds(40));
    press(KEY_A);
    release(KEY_A);
    pass(milliseconds(20));
  }
  EXPECT_GE(typed, Filter::longestWait - milliseconds(40));
}

TEST_F(FilterTest, a_press_that_everybody_saw_before_the_grab_gives_the_keyboard_back) {
  grabWithTab();
  filter.receive(board, {key(KEY_A, 1)}, now - Filter::startGap, now);
  EXPECT_THAT(grabbed, ElementsAre(otherBoard));
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, keys_that_are_no_shortcut_go_on_unasked_and_in_order) {
  grabWithTab();
  press(KEY_LEFTSHIFT);
  press(KEY_B);
  release(KEY_B);
  release(KEY_LEFTSHIFT);
  EXPECT_THAT(sent, IsEmpty());
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_LEFTSHIFT, 1)}, Frame{key(KEY_B, 1)},
                                   Frame{key(KEY_B, 0)}, Frame{key(KEY_LEFTSHIFT, 0)}));
}

TEST_F(FilterTest, a_shortcut_waits_for_its_verdict) {
  grabWithTab();
  press(KEY_TAB);
  EXPECT_THAT(sent, ElementsAre(FromHelper(Question{1, KEY_TAB, {}})));
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, a_swallowed_shortcut_leaves_no_trace) {
  grabWithTab();
  receive({scanCode(15), key(KEY_TAB, 1)});
  ASSERT_TRUE(answer(true));
  receive({key(KEY_TAB, 2)});
  receive({scanCode(15), key(KEY_TAB, 0)});
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, the_release_of_a_shortcut_is_told) {
  grabWithTab();
  press(KEY_TAB);
  ASSERT_TRUE(answer(true));
  forget();
  release(KEY_TAB);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_TAB, false, false, {}})));
}

TEST_F(FilterTest, the_repeats_of_a_shortcut_are_told_as_such) {
  grabWithTab();
  press(KEY_TAB);
  ASSERT_TRUE(answer(true));
  forget();
  receive({key(KEY_TAB, 2)});
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_TAB, true, true, {}})));
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, a_shortcut_that_may_pass_goes_on_with_its_repeats_and_release) {
  grabWithTab();
  receive({scanCode(15), key(KEY_TAB, 1)});
  ASSERT_TRUE(answer(false));
  receive({key(KEY_TAB, 2)});
  release(KEY_TAB);
  EXPECT_THAT(emitted, ElementsAre(Frame{scanCode(15), key(KEY_TAB, 1)}, Frame{key(KEY_TAB, 2)},
                                   Frame{key(KEY_TAB, 0)}));
}

TEST_F(FilterTest, keys_typed_during_a_question_come_after_its_verdict) {
  grabWithTab();
  press(KEY_TAB);
  press(KEY_A, otherBoard);
  release(KEY_TAB);
  EXPECT_THAT(emitted, IsEmpty());
  ASSERT_TRUE(answer(false));
  EXPECT_THAT(emitted,
              ElementsAre(Frame{key(KEY_TAB, 1)}, Frame{key(KEY_A, 1)}, Frame{key(KEY_TAB, 0)}));
}

TEST_F(FilterTest, two_shortcuts_in_a_row_are_asked_about_one_after_the_other) {
  configure({KEY_TAB, KEY_GRAVE});
  pass(Filter::startGap + milliseconds(1));
  forget();
  press(KEY_TAB);
  press(KEY_GRAVE);
  EXPECT_THAT(sent, ElementsAre(FromHelper(Question{1, KEY_TAB, {}})));
  ASSERT_TRUE(answer(true));
  EXPECT_EQ(sent.back(), FromHelper(Question{2, KEY_GRAVE, {}}));
  ASSERT_TRUE(answer(false));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_GRAVE, 1)}));
}

TEST_F(FilterTest, a_frame_keeps_what_is_beside_the_swallowed_key) {
  grabWithTab();
  receive({scanCode(15), key(KEY_TAB, 1), scanCode(30), key(KEY_A, 1)});
  ASSERT_TRUE(answer(true));
  EXPECT_THAT(emitted, ElementsAre(Frame{scanCode(30), key(KEY_A, 1)}));
}

TEST_F(FilterTest, the_pointer_parts_of_a_keyboard_go_on) {
  grabWithTab();
  const Frame movement{{EV_REL, REL_X, 5}, {EV_REL, REL_Y, -3}, key(BTN_LEFT, 1)};
  receive(movement);
  EXPECT_THAT(emitted, ElementsAre(movement));
}

TEST_F(FilterTest, lights_do_not_travel_to_the_clone) {
  grabWithTab();
  receive({{EV_LED, LED_CAPSL, 1}});
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, modifiers_of_every_keyboard_count) {
  grabWithTab();
  press(KEY_RIGHTCTRL, otherBoard);
  press(KEY_TAB);
  EXPECT_THAT(sent, ElementsAre(FromHelper(Question{1, KEY_TAB, {.control = true}})));
}

TEST_F(FilterTest, modifiers_are_those_of_the_moment_of_the_press) {
  grabWithTab();
  press(KEY_LEFTSHIFT);
  press(KEY_TAB);
  release(KEY_LEFTSHIFT);
  EXPECT_EQ(sent.back(), FromHelper(Question(1, KEY_TAB, {.shift = true})));
  ASSERT_TRUE(answer(false));
  release(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, false, false, {})));
}

TEST_F(FilterTest, caps_lock_is_no_modifier) {
  grabWithTab();
  press(KEY_CAPSLOCK);
  press(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(Question(1, KEY_TAB, {})));
}

TEST_F(FilterTest, escape_is_told_and_goes_on) {
  grabWithTab();
  press(KEY_ESC);
  release(KEY_ESC);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_ESC, true, false, {}}),
                                FromHelper(KeyMoved{KEY_ESC, false, false, {}})));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_ESC, 1)}, Frame{key(KEY_ESC, 0)}));
}

TEST_F(FilterTest, escape_is_told_of_a_keyboard_that_is_not_grabbed) {
  configure({});
  forget();
  press(KEY_ESC);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_ESC, true, false, {}})));
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, a_disabled_tap_is_told_nothing) {
  configure({KEY_TAB}, false);
  forget();
  press(KEY_ESC);
  press(KEY_TAB);
  EXPECT_THAT(sent, IsEmpty());
}

TEST_F(FilterTest, without_an_answer_in_time_the_key_passes_and_the_tap_is_disabled) {
  grabWithTab();
  press(KEY_TAB);
  press(KEY_A);
  pass(Filter::answerLimit + milliseconds(2));
  EXPECT_EQ(sent.back(), FromHelper(Disabled{DisableReason::noAnswer}));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_TAB, 1)}, Frame{key(KEY_A, 1)}));
}

TEST_F(FilterTest, after_a_missing_answer_the_next_shortcuts_pass_at_once) {
  grabWithTab();
  press(KEY_TAB);
  pass(Filter::answerLimit + milliseconds(2));
  release(KEY_TAB);
  forget();
  press(KEY_TAB);
  EXPECT_THAT(sent, IsEmpty());
}

TEST_F(FilterTest, after_being_enabled_again_the_tap_is_asked_again) {
  grabWithTab();
  press(KEY_TAB);
  pass(Filter::answerLimit + milliseconds(2));
  release(KEY_TAB);
  configure({KEY_TAB});
  pass(Filter::quietTime + milliseconds(1));
  press(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(Question(2, KEY_TAB, {})));
}

TEST_F(FilterTest, a_late_answer_changes_nothing) {
  grabWithTab();
  press(KEY_TAB);
  pass(Filter::answerLimit + milliseconds(2));
  emitted.clear();
  EXPECT_TRUE(filter.answer({1, true}, now));
  release(KEY_TAB);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_TAB, 0)}));
}

TEST_F(FilterTest, an_answer_to_no_question_is_refused) {
  grabWithTab();
  EXPECT_FALSE(filter.answer({1, true}, now));
}

TEST_F(FilterTest, the_keyboards_are_given_back_when_no_shortcut_is_wanted) {
  grabWithTab();
  configure({});
  EXPECT_THAT(grabbed, IsEmpty());
}

TEST_F(FilterTest, a_keyboard_is_given_back_once_its_keys_are_up) {
  grabWithTab();
  press(KEY_A);
  configure({});
  EXPECT_THAT(grabbed, ElementsAre(board));
  release(KEY_A);
  EXPECT_THAT(grabbed, IsEmpty());
  EXPECT_EQ(emitted.back(), Frame{key(KEY_A, 0)});
}

TEST_F(FilterTest, a_key_typed_just_before_the_keyboard_was_given_back_is_not_lost) {
  grabWithTab();
  const auto typed = now;
  now += milliseconds(1);
  configure({});
  filter.receive(board, {key(KEY_A, 1)}, typed, now);
  filter.receive(board, {key(KEY_A, 0)}, typed, now);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_A, 1)}, Frame{key(KEY_A, 0)}));
}

TEST_F(FilterTest, a_key_released_just_after_the_keyboard_was_given_back_does_not_stay_down) {
  grabWithTab();
  const auto typed = now;
  now += milliseconds(1);
  configure({});
  filter.receive(board, {key(KEY_A, 1)}, typed, now);
  emitted.clear();
  receive({scanCode(30), key(KEY_A, 0)});
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_A, 0)}));
}

TEST_F(FilterTest, a_key_typed_after_the_keyboard_was_given_back_comes_once) {
  grabWithTab();
  configure({});
  press(KEY_A);
  release(KEY_A);
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, an_inactive_session_lets_go_at_once_with_nothing_held_down) {
  grabWithTab();
  press(KEY_LEFTCTRL);
  press(KEY_E);
  forget();
  filter.setSessionActive(false, now);
  EXPECT_THAT(grabbed, IsEmpty());
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_E, 0), key(KEY_LEFTCTRL, 0)}));
  EXPECT_THAT(sent, ElementsAre(FromHelper(Disabled{DisableReason::session})));
}

TEST_F(FilterTest, an_inactive_session_passes_on_what_waits_for_a_verdict) {
  grabWithTab();
  press(KEY_TAB);
  filter.setSessionActive(false, now);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_TAB, 1)}, Frame{key(KEY_TAB, 0)}));
}

TEST_F(FilterTest, a_session_that_is_active_again_takes_the_keyboards_again) {
  grabWithTab();
  filter.setSessionActive(false, now);
  configure({KEY_TAB});
  pass(milliseconds(5000));
  EXPECT_THAT(grabbed, IsEmpty());
  filter.setSessionActive(true, now);
  pass(Filter::quietTime);
  EXPECT_THAT(grabbed, ElementsAre(board, otherBoard));
}

TEST_F(FilterTest, another_program_s_grab_makes_the_listener_unavailable) {
  busy = {otherBoard};
  configure({KEY_TAB});
  pass(Filter::startGap + milliseconds(1));
  EXPECT_EQ(sent.back(), FromHelper(Availability{false}));
  EXPECT_THAT(grabbed, IsEmpty());
}

TEST_F(FilterTest, a_grab_of_another_program_that_ends_is_noticed) {
  busy = {otherBoard};
  configure({KEY_TAB});
  pass(Filter::startGap + milliseconds(1));
  busy.clear();
  pass(Filter::retryTime + milliseconds(1));
  EXPECT_EQ(sent.back(), FromHelper(Availability{true}));
}

TEST_F(FilterTest, looking_for_another_program_s_grab_keeps_no_keyboard) {
  busy = {otherBoard};
  configure({KEY_TAB});
  pass(Filter::startGap + milliseconds(1));
  configure({}, false);
  pass(milliseconds(10'000));
  EXPECT_THAT(grabbed, IsEmpty());
}

TEST_F(FilterTest, another_program_s_grab_is_not_looked_for_while_the_session_is_not_active) {
  busy = {otherBoard};
  configure({KEY_TAB});
  pass(Filter::startGap + milliseconds(1));
  filter.setSessionActive(false, now);
  busy.clear();
  forget();
  EXPECT_FALSE(filter.nextDeadline());
  filter.advance(now + 2 * Filter::retryTime);
  EXPECT_THAT(sent, IsEmpty());
  filter.setSessionActive(true, now);
  pass(Filter::retryTime + milliseconds(1));
  EXPECT_THAT(sent, ElementsAre(FromHelper(Availability{true})));
}

TEST_F(FilterTest, a_keyboard_plugged_in_later_is_taken_after_its_start_gap) {
  grabWithTab();
  filter.addKeyboard(9, {}, now);
  pass(Filter::startGap - milliseconds(1));
  EXPECT_FALSE(grabbed.contains(9));
  pass(milliseconds(2));
  EXPECT_TRUE(grabbed.contains(9));
}

TEST_F(FilterTest, unplugging_with_a_shortcut_down_tells_its_release) {
  grabWithTab();
  press(KEY_TAB);
  ASSERT_TRUE(answer(true));
  forget();
  filter.removeKeyboard(board, now);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{KEY_TAB, false, false, {}})));
}

TEST_F(FilterTest, unplugging_during_a_question_lets_the_other_keyboards_go_on) {
  grabWithTab();
  press(KEY_TAB);
  press(KEY_A, otherBoard);
  filter.removeKeyboard(board, now);
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, false, false, {})));
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_A, 1)}));
  EXPECT_TRUE(filter.answer({1, true}, now));
}

TEST_F(FilterTest, unplugging_forgets_the_modifiers_of_the_keyboard) {
  grabWithTab();
  press(KEY_LEFTSHIFT, otherBoard);
  filter.removeKeyboard(otherBoard, now);
  press(KEY_TAB);
  EXPECT_EQ(sent.back(), FromHelper(Question(1, KEY_TAB, {})));
}

TEST_F(FilterTest, lost_events_are_made_up_for) {
  grabWithTab();
  press(KEY_LEFTCTRL);
  emitted.clear();
  KeySet down;
  down.set(KEY_LEFTSHIFT);
  filter.resynchronise(board, down, now);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_LEFTCTRL, 0), key(KEY_LEFTSHIFT, 1)}));
}

TEST_F(FilterTest, a_shortcut_found_down_after_lost_events_toggles_nothing) {
  grabWithTab();
  KeySet down;
  down.set(KEY_TAB);
  filter.resynchronise(board, down, now);
  release(KEY_TAB);
  EXPECT_THAT(sent, IsEmpty());
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(FilterTest, a_shortcut_found_up_after_lost_events_is_told_as_released) {
  grabWithTab();
  press(KEY_TAB);
  ASSERT_TRUE(answer(true));
  filter.resynchronise(board, {}, now);
  EXPECT_EQ(sent.back(), FromHelper(KeyMoved(KEY_TAB, false, false, {})));
}

TEST_F(FilterTest, the_panic_chord_is_read_even_while_a_question_waits) {
  grabWithTab();
  press(KEY_TAB);
  press(KEY_ESC);
  press(KEY_BACKSPACE);
  EXPECT_FALSE(panicked);
  press(KEY_ENTER);
  EXPECT_TRUE(panicked);
}

TEST_F(FilterTest, the_panic_chord_is_read_from_a_keyboard_that_is_not_grabbed) {
  press(KEY_ENTER);
  press(KEY_BACKSPACE);
  press(KEY_ESC);
  EXPECT_TRUE(panicked);
}

}  // namespace
}  // namespace vorrin::input_helper
