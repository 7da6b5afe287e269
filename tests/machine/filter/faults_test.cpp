#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include <csignal>
#include <optional>

#include "filter_test.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
  keyboard->press(KEY_LEFTCTRL);
  ASSERT_TRUE(untilSeen(down(KEY_LEFTCTRL)));
  ::kill(helper->privilegedPart(), SIGKILL);
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_TRUE(untilSeen(up(KEY_LEFTCTRL)));
  keyboard->release(KEY_LEFTCTRL);
  expectKeyboardGivenBack();
}

TEST_F(GrabbedKeyboard, a_helper_that_hangs_is_ended_by_its_watchdog) {
  keyboard->press(KEY_LEFTCTRL);
  ASSERT_TRUE(untilSeen(down(KEY_LEFTCTRL)));
  ::kill(helper->workingPart(), SIGSTOP);
  EXPECT_TRUE(untilHelperEnded());
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

TEST_F(GrabbedKeyboard, keys_that_move_while_no_answer_comes_arrive_afterwards_in_order) {
  helper->verdict = [](const Question&) { return std::nullopt; };
  keyboard->press(KEY_LEFTCTRL);
  ASSERT_TRUE(untilSeen(down(KEY_LEFTCTRL)));
  keyboard->press(KEY_TAB);
  keyboard->release(KEY_LEFTCTRL);
  keyboard->release(KEY_TAB);
  ASSERT_TRUE(typePassing(KEY_A));
  EXPECT_THAT(watch.keys(), ElementsAre(down(KEY_LEFTCTRL), down(KEY_TAB), up(KEY_LEFTCTRL),
                                        up(KEY_TAB), down(KEY_A), up(KEY_A)));
  EXPECT_THAT(watch.held(), IsEmpty());
}

TEST_F(GrabbedKeyboard, a_tap_enabled_again_after_a_missing_answer_is_asked_again) {
  helper->verdict = [](const Question&) { return std::nullopt; };
  keyboard->tap(KEY_TAB);
  ASSERT_TRUE(until([this] { return !helper->saidOf<Disabled>().empty(); }));
  ASSERT_TRUE(untilSeen(up(KEY_TAB)));
  helper->verdict = [](const Question&) { return true; };
  helper->configure({KEY_TAB});
  ASSERT_TRUE(until([this] { return !keyboardIsFree(); }));
  forget();
  keyboard->tap(KEY_TAB);
  ASSERT_TRUE(typePassing(KEY_X));
  EXPECT_EQ(helper->saidOf<Question>().size(), 1U);
  EXPECT_THAT(watch.keys(), ElementsAre(down(KEY_X), up(KEY_X)));
}

TEST_F(GrabbedKeyboard, a_signal_that_ends_the_helper_gives_the_keyboards_back) {
  keyboard->press(KEY_E);
  ASSERT_TRUE(untilSeen(down(KEY_E)));
  ::kill(helper->workingPart(), SIGTERM);
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_TRUE(untilSeen(up(KEY_E)));
  keyboard->release(KEY_E);
  expectKeyboardGivenBack();
}

}  // namespace
}  // namespace vorrin::machine
