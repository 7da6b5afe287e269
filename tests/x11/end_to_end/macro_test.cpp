#include <gmock/gmock.h>

#include <algorithm>

#include "end_to_end_test.h"

namespace vorrin::x11_tests {
namespace {

TEST_F(EndToEndTest, a_shortcut_starts_and_stops_its_macro_and_reaches_nobody_else) {
  start();
  const auto togglers = {std::pair{keys::backtick, keyboardMacro}, {keys::tab, mouseMacro}};
  for (const auto& [key, macro] : togglers) {
    user.tap(key);
    expectActions(macro);
    user.tap(key);
    expectSilence();
  }
  const std::vector<ClientEvent> events = client->readAll(user);
  for (const auto& [key, macro] : togglers) {
    EXPECT_THAT(keysOf(events), testing::Not(testing::HasSubstr(tapOf(key))));
  }
  EXPECT_EQ(countOf(events, "FocusOut"), 0U);
}

TEST_F(EndToEndTest, escape_stops_both_macros_and_reaches_the_client) {
  start();
  startMacros();
  user.tap(keys::escape);
  client->readUntil(releaseOf(keys::escape));
  expectSilence();
}

TEST_F(EndToEndTest, actions_come_at_the_interval) {
  settings.intervals = {0.05, 0.02};
  start();
  user.tap(keys::tab);
  std::vector<ClientEvent> events = client->readUntil(nth(51, "ButtonPress"));
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

}  // namespace
}  // namespace vorrin::x11_tests
