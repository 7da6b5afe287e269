#include "end_to_end_test.h"
#include "input_watch.h"

namespace vorrin::x11_tests {
namespace {

using std::chrono::milliseconds;

// Clicks into Vorrin's window while another one has the keyboard.
struct ActivationTest : EndToEndTest {
  ActivationTest() { settings.intervals = {0.05, 0.001}; }

  void pointAtFullScreen() { user.pointAt(vorrinWindow(), 500, 55); }

  /// Puts the client in front by keyboard, the pointer staying where it is.
  /// It may not last: the macro's next click brings Vorrin back.
  void switchToClient() {
    windows.ask(client->window());
    client->readUntil(nth(1, "FocusIn"));
  }

  /// Waits for the client to lose the keyboard: while Vorrin only begins to leave the front, it is
  /// there still.
  [[nodiscard]] bool waitUntilVorrinIsInFront() {
    client->readUntil(nth(1, "FocusOut"));
    return waitUntil([this] { return windows.active() == vorrinWindow(); });
  }

  /// For as long as a user takes to click again, and longer than clicks are on their way.
  static void lookAtWindow() { waitFor(milliseconds(250)); }
};

TEST_F(ActivationTest, clicks_of_the_macro_over_the_window_do_no_more_than_pause_it) {
  start();
  const unsigned width = windows.widthOf(vorrinWindow());
  for (int round = 0; round < 5; ++round) {
    pointAtFullScreen();
    if (round == 0) user.tap(keys::tab);
    if (round > 0) switchToClient();
    ASSERT_TRUE(waitUntilVorrinIsInFront());
    ASSERT_TRUE(probe.waitUntilFree(keys::tab));
    InputWatch watch(desktop.display());
    lookAtWindow();
    EXPECT_EQ(watch.takePresses(), 0);
    EXPECT_EQ(windows.widthOf(vorrinWindow()), width);
  }
}

}  // namespace
}  // namespace vorrin::x11_tests
