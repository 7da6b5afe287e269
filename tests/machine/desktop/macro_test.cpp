#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "desktop_test.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::machine {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Not;
using x11_tests::waitFor;

TEST_F(WaylandDesktop, tab_starts_clicking_and_stops_it_and_never_reaches_the_client) {
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_TAB);
  auto lines = readUntil("click up", 20);
  if (std::getenv("VORRIN_SCREENSHOT") != nullptr) session_->takeScreenshot();
  toggle(KEY_TAB);
  const auto rest = takeLines(1500ms);
  lines.insert(lines.end(), rest.begin(), rest.end());
  EXPECT_EQ(std::ranges::count(lines, "click down"), std::ranges::count(lines, "click up"));
  EXPECT_THAT(lines, Not(Contains(keyLine(KEY_TAB, true))));
  EXPECT_THAT(lines, Not(Contains(keyLine(KEY_TAB, false))));
}

TEST_F(WaylandDesktop, backtick_types_the_digit_until_escape) {
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_GRAVE);
  const auto lines = readUntil(keyLine(KEY_7, false), 10);
  EXPECT_THAT(lines, Not(Contains(keyLine(KEY_GRAVE, true))));
  toggle(KEY_ESC);
  readUntil(keyLine(KEY_ESC, false));
  EXPECT_THAT(takeLines(1s), Not(Contains(keyLine(KEY_7, true))));
}

TEST_F(WaylandDesktop, other_keys_arrive_while_clicking) {
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_TAB);
  toggle(KEY_A);
  readUntil(keyLine(KEY_A, false));
  toggle(KEY_ESC);
  EXPECT_THAT(readUntil(keyLine(KEY_ESC, false)), Contains(keyLine(KEY_ESC, true)));
}

TEST_F(WaylandDesktop, clicking_pauses_while_vorrin_has_the_keyboard) {
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_TAB);
  readUntil("click up", 5);
  session_->focus(vorrinWindow);
  readUntil("inactive");
  watch_.look();
  watch_.forget();
  waitFor(1s);
  watch_.look();
  EXPECT_TRUE(watch_.keys().empty());
  session_->focus(loggingClient);
  readUntil("click up", 5);
}

}  // namespace
}  // namespace vorrin::machine
