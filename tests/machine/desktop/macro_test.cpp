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
using x11_tests::waitUntil;

class DesktopMacros : public WaylandDesktop, public testing::WithParamInterface<Compositor> {
 protected:
  static void SetUpTestSuite() {}
  void SetUp() override { useDesktop(GetParam()); }

  /// Whether nothing is typed or clicked for a second.
  bool isQuiet() {
    watch_.look();
    watch_.forget();
    waitFor(1s);
    watch_.look();
    return watch_.keys().empty();
  }
};

TEST_P(DesktopMacros, tab_starts_clicking_and_stops_it_and_never_reaches_the_client) {
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

TEST_P(DesktopMacros, backtick_types_the_digit_until_escape) {
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_GRAVE);
  const auto lines = readUntil(keyLine(KEY_7, false), 10);
  EXPECT_THAT(lines, Not(Contains(keyLine(KEY_GRAVE, true))));
  toggle(KEY_ESC);
  readUntil(keyLine(KEY_ESC, false));
  EXPECT_THAT(takeLines(1s), Not(Contains(keyLine(KEY_7, true))));
}

TEST_P(DesktopMacros, other_keys_arrive_while_clicking) {
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_TAB);
  toggle(KEY_A);
  readUntil(keyLine(KEY_A, false));
  toggle(KEY_ESC);
  EXPECT_THAT(readUntil(keyLine(KEY_ESC, false)), Contains(keyLine(KEY_ESC, true)));
}

TEST_P(DesktopMacros, clicking_pauses_while_vorrin_has_the_keyboard) {
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_TAB);
  readUntil("click up", 5);
  focusVorrin();
  EXPECT_TRUE(waitUntil([this] { return isQuiet(); }, 5s));
  focusClient();
  readUntil("click up", 5);
}

// The last one: it ends the desktop.
TEST_P(DesktopMacros, end_with_the_desktop_and_give_the_keyboard_back) {
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_TAB);
  readUntil("click up", 3);
  keyboard_->press(KEY_LEFTCTRL);
  readUntil(keyLine(KEY_LEFTCTRL, true));
  session_->kill();
  EXPECT_TRUE(vorrin_->waitForEnd());
  keyboard_->release(KEY_LEFTCTRL);
  EXPECT_TRUE(waitUntil([this] {
    watch_.look();
    return !watch_.has("vorrin-input-helper") && watch_.held().empty() &&
           watch_.isFree("test/Test keyboard", "Test keyboard");
  }));
}

INSTANTIATE_TEST_SUITE_P(Sway, DesktopMacros, testing::Values(Compositor::sway));
INSTANTIATE_TEST_SUITE_P(Weston, DesktopMacros, testing::Values(Compositor::weston));

}  // namespace
}  // namespace vorrin::machine
