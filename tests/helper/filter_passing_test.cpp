#include <map>
#include <sstream>
#include <string>

#include "filter_test.h"

namespace vorrin::input_helper {
namespace {

using namespace helper_protocol;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(GrabbedFilter, keys_that_are_no_shortcut_go_on_unasked_and_in_order) {
  press(KEY_LEFTSHIFT);
  press(KEY_B);
  release(KEY_B);
  release(KEY_LEFTSHIFT);
  EXPECT_THAT(sent, IsEmpty());
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_LEFTSHIFT, 1)}, Frame{key(KEY_B, 1)},
                                   Frame{key(KEY_B, 0)}, Frame{key(KEY_LEFTSHIFT, 0)}));
}

/// What is done and what comes of it. "+tab" is a press, "-tab" a release and "rtab" a repeat,
/// "?tab" a question about it; a ' behind it means the other keyboard.
struct Scenario {
  const char* what;
  const char* moves;
  const char* sent;
  const char* emitted;
};

const Scenario scenarios[] = {
    {"a shortcut waits for its verdict", "+tab", "?tab", ""},
    {"swallowed it leaves no trace", "+tab swallow rtab -tab", "?tab rtab -tab", ""},
    {"passed it goes on to its release", "+tab pass rtab -tab", "?tab rtab -tab", "+tab rtab -tab"},
    {"keys typed during a question wait", "+tab +a' -tab", "?tab", ""},
    {"they come after the verdict", "+tab +a' -tab pass", "?tab -tab", "+tab +a -tab"},
    {"a second shortcut waits for the first", "+tab +grave", "?tab", ""},
    {"it is asked about then", "+tab +grave swallow pass", "?tab ?grave", "+grave"},
    {"modifiers of every keyboard count", "+ctrl' +tab -tab", "", "+ctrl +tab -tab"},
    {"as they are at the press", "+tab +shift -shift pass", "?tab", "+tab +shift -shift"},
    {"and no later", "+shift -shift +tab", "?tab", "+shift -shift"},
    {"Caps Lock is no modifier", "+caps +tab", "?tab", "+caps"},
    {"Escape is told and goes on", "+esc -esc", "+esc -esc", "+esc -esc"},
    {"Escape is told of a keyboard not grabbed", "ungrab +esc", "+esc", ""},
    {"a disabled tap is told nothing", "disable +esc +tab", "", ""},
    {"without an answer in time keys pass", "+tab +a wait", "?tab disabled", "+tab +a"},
    {"a late answer is none", "+tab wait late -tab", "?tab disabled", "+tab -tab"},
    {"keys pass unasked then", "+tab wait -tab +tab -tab", "?tab disabled", "+tab -tab"},
    {"until it is enabled", "+tab wait -tab enable +tab", "?tab disabled ?tab", "+tab -tab"},
    {"unplugging tells a release", "+tab swallow unplug", "?tab -tab", ""},
    {"unplugging ends a question", "+tab +a' unplug late", "?tab -tab", "+a"},
    {"unplugging forgets modifiers", "+shift' unplug' +tab", "?tab", "+shift"},
    {"two keys are no panic chord", "+tab +esc +back", "?tab", ""},
    {"the chord is read during a question", "+tab +esc +back +enter", "?tab panic", ""},
    {"and of a keyboard not grabbed", "ungrab +enter +back +esc", "panic", ""},
};

const std::map<std::string, int> keyCodes{{"a", KEY_A},
                                          {"tab", KEY_TAB},
                                          {"grave", KEY_GRAVE},
                                          {"shift", KEY_LEFTSHIFT},
                                          {"ctrl", KEY_RIGHTCTRL},
                                          {"caps", KEY_CAPSLOCK},
                                          {"esc", KEY_ESC},
                                          {"enter", KEY_ENTER},
                                          {"back", KEY_BACKSPACE}};

std::string shown(int code, int value) {
  const auto named = std::ranges::find(keyCodes, code, &decltype(keyCodes)::value_type::second);
  return std::string("-+r").substr(static_cast<std::size_t>(value), 1) + named->first;
}

std::string shown(const FromHelper& message) {
  if (const auto* moved = std::get_if<KeyMoved>(&message)) {
    const auto text = shown(moved->key, moved->down + moved->repeated);
    return moved->question == 0 ? text : "?" + text.substr(1);
  }
  return std::holds_alternative<Disabled>(message) ? "disabled" : "another word";
}

std::string shown(const Frame& frame) {
  std::string text;
  for (const auto& event : frame)
    text += (text.empty() ? "" : ",") + shown(event.code, event.value);
  return text;
}

struct PassingFilter : GrabbedFilter, testing::WithParamInterface<Scenario> {
  PassingFilter() {
    configure({KEY_TAB, KEY_GRAVE});
    forget();
  }

  void move(std::string word) {
    const KeyboardId id = word.ends_with("'") ? otherBoard : board;
    if (word.ends_with("'")) word.pop_back();
    if (word == "swallow" || word == "pass") return answer(word == "swallow");
    if (word == "late") return filter.answer({1, 1}, now);
    if (word == "wait") return pass(Filter::answerLimit + std::chrono::milliseconds(2));
    if (word == "unplug") return filter.removeKeyboard(id, now);
    if (word == "ungrab") return configure({});
    if (word == "disable") return configure({KEY_TAB}, false);
    if (word != "enable") {
      const auto value = static_cast<int>(std::string("-+r").find(word[0]));
      return receive({key(keyCodes.at(word.substr(1)), value)}, id);
    }
    configure({KEY_TAB});
  }
};

INSTANTIATE_TEST_SUITE_P(Keys, PassingFilter, testing::ValuesIn(scenarios));

TEST_P(PassingFilter, tells_and_emits_as_in_this_scenario) {
  const auto& [what, moves, sentThen, emittedThen] = GetParam();
  SCOPED_TRACE(what);
  std::istringstream words(moves);
  for (std::string word; words >> word;) move(word);
  std::string told;
  std::string typed;
  for (const auto& message : sent) told += (told.empty() ? "" : " ") + shown(message);
  for (const auto& frame : emitted) typed += (typed.empty() ? "" : " ") + shown(frame);
  if (panicked) told += told.empty() ? "panic" : " panic";
  EXPECT_EQ(told, sentThen);
  EXPECT_EQ(typed, emittedThen);
}

TEST_F(GrabbedFilter, a_frame_keeps_what_is_beside_the_swallowed_key_but_scan_codes) {
  receive({scanCode(15), key(KEY_TAB, 1), scanCode(30), key(KEY_A, 1)});
  answer(true);
  EXPECT_THAT(emitted, ElementsAre(Frame{key(KEY_A, 1)}));
}

TEST_F(GrabbedFilter, the_pointer_parts_of_a_keyboard_go_on) {
  const Frame movement{{EV_REL, REL_X, 5}, {EV_REL, REL_Y, -3}, key(BTN_LEFT, 1)};
  receive(movement);
  EXPECT_THAT(emitted, ElementsAre(movement));
}

TEST_F(GrabbedFilter, lights_do_not_travel_to_the_clone) {
  receive({{EV_LED, LED_CAPSL, 1}});
  EXPECT_THAT(emitted, IsEmpty());
}

TEST_F(GrabbedFilter, an_answer_to_no_question_counts_for_none) {
  filter.answer({1, true}, now);
  press(KEY_TAB);
  release(KEY_TAB);
  EXPECT_THAT(sent, ElementsAre(FromHelper(KeyMoved{1, KEY_TAB, 1, 0})));
}

}  // namespace
}  // namespace vorrin::input_helper
