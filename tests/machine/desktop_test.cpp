#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "desktop_fixture.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::machine {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Not;
using x11_tests::waitFor;
using x11_tests::waitUntil;

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

/// The pop-up of the digit in Vorrin's window.
constexpr int outputX = 208;
constexpr int outputY = 369;

int storedDigit() {
  return std::stoi(playerOutput({SETTINGS_PATH}));
}

class DigitChoice : public WaylandDesktop {
 protected:
  /// Gives the keyboard to the pop-up of the digit, and leaves that closed.
  static void focusPopUp() {
    session_->pointAt(outputX, outputY);
    ASSERT_TRUE(waitUntil([] {
      // The click opens the pop-up, if it does not only bring the window to the front.
      for (const int key : {BTN_LEFT, KEY_ESC, KEY_HOME}) {
        toggle(key);
        waitFor(300ms);
      }
      return storedDigit() == 0;
    }));
  }

  /// By the arrow keys, with the keyboard at the pop-up.
  static void choose(int digit) {
    ASSERT_TRUE(waitUntil([=] {
      const int now = storedDigit();
      if (now == digit) return true;
      toggle(now < digit ? KEY_DOWN : KEY_UP);
      waitUntil([=] { return storedDigit() != now; }, 5s);
      return false;
    })) << digit;
  }
};

TEST_F(DigitChoice, every_digit_chosen_in_the_window_is_typed) {
  startVorrin("0.05", "0.05", 7);
  focusPopUp();
  for (int digit = 0; digit < 10; ++digit) {
    choose(digit);
    focusClient();
    ASSERT_TRUE(untilKeyboardHeld());
    takeLines(300ms);
    toggle(KEY_GRAVE);
    const int key = digit == 0 ? KEY_0 : KEY_1 + digit - 1;
    EXPECT_EQ(readUntil(keyLine(key, false), 3).front(), keyLine(key, true));
    toggle(KEY_GRAVE);
    session_->focus(vorrinWindow);
    readUntil("inactive");
  }
  endVorrin();
}

}  // namespace
}  // namespace vorrin::machine
