#include <algorithm>
#include <functional>

#include "end_to_end_test.h"

namespace vorrin::x11_tests {
namespace {

using std::chrono::milliseconds;

// How soon the program acts upon its window gaining or losing the keyboard.
struct FocusTest : EndToEndTest {
  /// The shortest of several measurements: what else happens on the machine may lengthen one, but
  /// nothing shortens it.
  static milliseconds shortest(const std::function<std::int64_t()>& nanoseconds) {
    std::int64_t least = nanoseconds();
    for (int round = 1; round < 5; ++round) least = std::min(least, nanoseconds());
    return std::chrono::duration_cast<milliseconds>(std::chrono::nanoseconds(least));
  }

  /// Puts the client in front by the window manager alone, the pointer staying where it is.
  ClientEvent focusClient() {
    EXPECT_TRUE(windows.activate(client->window()));
    return client->readUntil([](const ClientEvent& event) { return event.kind == "FocusIn"; })
        .back();
  }

  void focusVorrin() { EXPECT_TRUE(windows.activate(vorrinWindow())); }
};

// The widget library by itself holds the news back for 100 ms.
constexpr milliseconds atOnce{30};

TEST_F(FocusTest, shortcuts_work_as_soon_as_another_window_is_in_front) {
  start();
  const milliseconds taken = shortest([&] {
    focusVorrin();
    EXPECT_TRUE(probe.waitUntilFree(keys::tab));
    const std::int64_t inFront = focusClient().arrival;
    EXPECT_TRUE(probe.waitUntilHeld(keys::tab));
    return monotonicNanoseconds() - inFront;
  });
  EXPECT_LT(taken, atOnce);
}

TEST_F(FocusTest, shortcuts_are_free_as_soon_as_the_window_is_in_front) {
  start();
  const milliseconds taken = shortest([&] {
    focusVorrin();
    const std::int64_t inFront =
        client->readUntil([](const ClientEvent& event) { return event.kind == "FocusOut"; })
            .back()
            .arrival;
    EXPECT_TRUE(probe.waitUntilFree(keys::tab));
    const std::int64_t free = monotonicNanoseconds();
    focusClient();
    EXPECT_TRUE(probe.waitUntilHeld(keys::tab));
    return free - inFront;
  });
  EXPECT_LT(taken, atOnce);
}

TEST_F(FocusTest, macros_go_on_as_soon_as_another_window_is_in_front) {
  start();
  user.tap(keys::backtick);
  expectActions(keyboardMacro);
  const milliseconds taken = shortest([&] {
    focusVorrin();
    EXPECT_TRUE(probe.waitUntilFree(keys::tab));
    const std::int64_t inFront = focusClient().arrival;
    return client->readUntil([](const ClientEvent& event) { return event.kind == "KeyPress"; })
               .back()
               .arrival -
           inFront;
  });
  EXPECT_LT(taken, atOnce);
}

}  // namespace
}  // namespace vorrin::x11_tests
