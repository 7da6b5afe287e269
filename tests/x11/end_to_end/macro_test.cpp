#include <gmock/gmock.h>

#include <algorithm>

#include "end_to_end_test.h"

namespace vorrin::x11_tests {
namespace {

struct EachShortcut : EndToEndTest, testing::WithParamInterface<std::uint16_t> {};

INSTANTIATE_TEST_SUITE_P(OfTheSix, EachShortcut, testing::ValuesIn(keys::shortcuts),
                         [](const auto& key) { return "key" + std::to_string(key.param); });

TEST_P(EachShortcut, starts_and_stops_either_macro_and_reaches_nobody_else) {
  const std::uint16_t other = GetParam() == keys::f9 ? keys::f8 : keys::f9;
  for (const int macro : {keyboardMacro, mouseMacro}) {
    settings.keys = {GetParam(), other};
    if (macro == mouseMacro) std::swap(settings.keys[0], settings.keys[1]);
    start();
    user.tap(GetParam());
    expectActions(macro);
    user.tap(GetParam());
    expectSilence();
    user.tap(GetParam());
    expectActions(macro);
    user.tap(keys::escape);
    const std::vector<ClientEvent> events = client->readAll(user);
    EXPECT_THAT(keysOf(events), testing::Not(testing::HasSubstr(tapOf(GetParam()))));
    EXPECT_EQ(countOf(events, "FocusOut"), 0U);
    kill();
  }
}

TEST_F(EndToEndTest, a_shortcut_held_down_toggles_once) {
  start();
  user.press(keys::tab);
  // Longer than it takes the keyboard to begin repeating.
  waitFor(std::chrono::milliseconds(1200));
  client->readAll(user);
  expectActions(mouseMacro);
  user.release(keys::tab);
  expectActions(mouseMacro);
  EXPECT_EQ(keysOf(client->readAll(user)), "");
}

TEST_F(EndToEndTest, escape_stops_both_macros_and_reaches_the_client) {
  start();
  user.tap(keys::backtick);
  user.tap(keys::tab);
  expectActions(keyboardMacro);
  expectActions(mouseMacro);
  user.tap(keys::escape);
  client->readUntil(releaseOf(keys::escape));
  expectSilence();
}

TEST_F(EndToEndTest, both_macros_run_at_once_and_stop_on_their_own) {
  start();
  user.tap(keys::backtick);
  user.tap(keys::tab);
  expectActions(keyboardMacro);
  expectActions(mouseMacro);
  user.tap(keys::backtick);
  expectActions(mouseMacro);
  user.tap(keys::tab);
  expectSilence();
}

TEST_F(EndToEndTest, typing_while_a_shortcut_is_held_arrives_complete_and_in_order) {
  start();
  user.press(keys::tab);
  std::string typed;
  for (int round = 0; round < 4; ++round) {
    for (const char character : std::string_view("the quick brown fox jumps over a lazy dog ")) {
      user.type(std::string_view(&character, 1));
      typed += character;
      waitFor(std::chrono::milliseconds(5));
    }
  }
  user.release(keys::tab);
  user.tap(keys::tab);
  EXPECT_EQ(textOf(client->readAll(user)), typed);
}

TEST_F(EndToEndTest, the_key_of_a_disabled_macro_reaches_the_client) {
  settings.enabled = {true, false};
  start();
  user.tap(keys::tab);
  EXPECT_EQ(keysOf(client->readAll(user)), tapOf(keys::tab));
  expectSilence();
}

struct EachDigit : EndToEndTest, testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(ZeroToNine, EachDigit, testing::Range(0, 10));

TEST_P(EachDigit, is_typed_as_that_key) {
  settings.digit = GetParam();
  start();
  user.tap(keys::backtick);
  const std::vector<ClientEvent> events =
      client->readUntil([count = 0](const ClientEvent& event) mutable {
        return event.kind == "KeyRelease" && ++count == 5;
      });
  EXPECT_EQ(textOf(events), std::string(5, static_cast<char>('0' + GetParam())));
}

TEST_F(EndToEndTest, actions_come_at_the_interval) {
  settings.intervals = {0.05, 0.02};
  start();
  user.tap(keys::tab);
  std::vector<ClientEvent> events =
      client->readUntil([count = 0](const ClientEvent& event) mutable {
        return event.kind == "ButtonPress" && ++count == 51;
      });
  std::erase_if(events, [](const ClientEvent& event) { return event.kind != "ButtonPress"; });
  std::vector<double> distances;
  for (std::size_t index = 1; index < events.size(); ++index) {
    distances.push_back(static_cast<double>(events[index].arrival - events[index - 1].arrival) *
                        1e-9);
  }
  // A late action does not shift the ones after it, so most distances are exact where a few are
  // not.
  const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
  std::ranges::nth_element(distances, middle);
  EXPECT_NEAR(*middle, 0.02, 0.005);
}

TEST_F(EndToEndTest, every_press_of_a_click_has_its_release) {
  settings.intervals = {0.01, 0.001};
  start();
  user.tap(keys::tab);
  const std::vector<ClientEvent> events =
      client->readUntil([count = 0](const ClientEvent& event) mutable {
        return event.kind == "ButtonRelease" && ++count == 500;
      });
  EXPECT_EQ(countOf(events, "ButtonPress"), 500U);
}

}  // namespace
}  // namespace vorrin::x11_tests
