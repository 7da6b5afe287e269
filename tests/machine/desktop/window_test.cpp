#include <linux/input-event-codes.h>

#include <utility>

#include "desktop_test.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::machine {
namespace {

using namespace std::chrono_literals;
using x11_tests::waitFor;
using x11_tests::waitUntil;

/// A place of the screen, with Vorrin's window where the desktop puts it.
struct Place {
  int x, y;
};
constexpr Place fullScreen{544, 75};
constexpr Place startKeyboard{549, 165};
constexpr Place startMouse{549, 275};
constexpr Place interval{355, 201};
constexpr Place presetName{200, 527};
constexpr Place savePreset{364, 527};
constexpr Place openSettings{170, 684};
/// Outside all windows.
constexpr Place nowhere{1240, 760};
/// Where the title begins, beside every sheet.
constexpr Box heading{60, 62, 110, 90};

/// Vorrin's own window: clicks over it, and how it looks.
class WaylandWindow : public WaylandDesktop {
 protected:
  void SetUp() override { startVorrin("1.0", "0.001", 1); }
  void TearDown() override {
    WaylandDesktop::TearDown();
    session_->arrangeVorrin("fullscreen disable, floating enable, move position 40 20");
  }

  static void pointAt(Place place) { session_->pointAt(place.x, place.y); }
  static void click(Place place) {
    pointAt(place);
    session_->click();
  }
  static bool isInFront() { return session_->vorrin().hasKeyboard; }
  static bool isFullScreen() { return session_->vorrin().isFullScreen; }
  static void showVorrin() {
    session_->focus(vorrinWindow);
    ASSERT_TRUE(waitUntil(isInFront));
    lookAtWindow();
  }
  /// For as long as a user takes to click again, and longer than clicks are on their way.
  static void lookAtWindow() { waitFor(500ms); }

  /// The user goes to the other window by the keyboard, and the macro's next click there, which is
  /// here, brings Vorrin back.
  void switchToClientUntilClicksBringVorrinBack() {
    session_->switchTo(loggingClient);
    ASSERT_TRUE(waitUntil(isInFront));
    lookAtWindow();
    watch_.look();
    watch_.forget();
    lookAtWindow();
    watch_.look();
    EXPECT_TRUE(watch_.keys().empty());
    EXPECT_FALSE(isFullScreen());
  }

  /// The green of marks and of the ring around what has the keyboard.
  static bool isGreen(const Picture::Pixel& pixel) { return pixel[1] > 200 && pixel[0] < 100; }

  static bool isDimmed() {
    const Picture title = session_->picture().part(heading);
    return title.around([&](int x, int y) { return title.at(x, y)[1] > 140; }).right < 0;
  }

  /// The screen once it shows the same as a moment before.
  static Picture settledPicture() {
    Picture last = session_->picture();
    EXPECT_TRUE(waitUntil([&] {
      waitFor(200ms);
      const Picture before = std::exchange(last, session_->picture());
      return last == before;
    }));
    return last;
  }
  static Picture settledWindow() {
    const auto [focused, full, x, y, width, height] = session_->vorrin();
    return settledPicture().part({x, y, x + width - 1, y + height - 1});
  }
};

TEST_F(WaylandWindow, a_click_that_brings_it_to_the_front_does_nothing_else) {
  click(fullScreen);
  ASSERT_TRUE(waitUntil(isInFront));
  lookAtWindow();
  EXPECT_FALSE(isFullScreen());
  session_->click();
  EXPECT_TRUE(waitUntil(isFullScreen));
}

TEST_F(WaylandWindow, clicks_of_the_macro_over_it_do_no_more_than_pause_the_macro) {
  pointAt(fullScreen);
  // When the machine is busy the key may pass, as for a user.
  ASSERT_TRUE(waitUntil([] {
    toggle(KEY_TAB);
    return waitUntil(isInFront, 3s);
  }));
  for (int round = 0; round < 3; ++round) switchToClientUntilClicksBringVorrinBack();
}

TEST_F(WaylandWindow, a_macro_started_by_its_button_is_not_stopped_by_its_own_clicks) {
  showVorrin();
  click(startMouse);
  for (int round = 0; round < 3; ++round) switchToClientUntilClicksBringVorrinBack();
  session_->focus(loggingClient);
  readUntil("click up", 5);
}

TEST_F(WaylandWindow, a_sheet_hangs_inside_it_and_moves_with_it_floating_and_in_a_tile) {
  showVorrin();
  ASSERT_FALSE(isDimmed());
  click(openSettings);
  pointAt(nowhere);
  ASSERT_TRUE(waitUntil(isDimmed));
  const Picture before = settledWindow();
  session_->arrangeVorrin("move position 130 60");
  EXPECT_EQ(settledWindow(), before);
  // The window alone, so as wide as the screen.
  session_->arrangeVorrin("floating disable");
  ASSERT_TRUE(waitUntil([] { return session_->vorrin().width > 1000; }));
  const Picture tile = settledWindow();
  constexpr Picture::Pixel panel{23, 23, 23};
  const Box place = tile.around([&](int x, int y) { return tile.at(x, y) == panel; });
  EXPECT_GT(place.right - place.left, 300);
  EXPECT_NEAR(place.left + place.right, session_->vorrin().width, 4);
  keyboard_->tap(KEY_ESC);
}

TEST_F(WaylandWindow, the_menu_of_a_pop_up_is_as_wide_as_it_and_round_and_leaves_no_trace) {
  showVorrin();
  // From the field back to the pop-up of the shortcut, by the keyboard; the pointer is elsewhere.
  click(interval);
  pointAt(nowhere);
  keyboard_->press(KEY_LEFTSHIFT);
  keyboard_->tap(KEY_TAB);
  keyboard_->release(KEY_LEFTSHIFT);
  ASSERT_TRUE(waitUntil([] { return isGreen(session_->picture().at(145, 201)); }));
  const Picture before = settledPicture();
  const auto ends = before.edges(201, 140, 262);
  keyboard_->tap(KEY_SPACE);
  Picture opened = before;
  Box menu;
  ASSERT_TRUE(waitUntil([&] {
    opened = session_->picture();
    menu = opened.aroundDifference(before);
    return menu.bottom > 330;
  }));
  EXPECT_EQ(menu.left, ends.front());
  EXPECT_EQ(menu.right + 1, ends.back());
  EXPECT_EQ(opened.at(menu.left, menu.bottom), before.at(menu.left, menu.bottom));
  keyboard_->tap(KEY_DOWN);
  ASSERT_TRUE(waitUntil([&] { return session_->picture() != opened; }));
  // The mark stays with the present item, the first one.
  opened = settledPicture();
  const Box mark = opened.around([&](int x, int y) {
    return x > menu.left && x < menu.right && y > 216 && y < menu.bottom &&
           isGreen(opened.at(x, y));
  });
  EXPECT_LT(mark.bottom, 250);
  EXPECT_GT(mark.left, (menu.left + menu.right) / 2);
  keyboard_->tap(KEY_ESC);
  EXPECT_TRUE(waitUntil([&] { return session_->picture() == before; }));
}

TEST_F(WaylandWindow, nothing_moves_when_a_macro_starts_and_a_preset_comes) {
  showVorrin();
  // Rows of the screen that cut through the bezels of buttons and of no text.
  const auto edges = [] {
    const Picture picture = session_->picture();
    return std::vector{picture.edges(158, 508, 590), picture.edges(556, 70, 590)};
  };
  constexpr Box title{522, 157, 576, 173};
  const Picture start = session_->picture().part(title);
  const auto before = edges();
  ASSERT_EQ(before[0].size(), 2u);
  ASSERT_EQ(before[1].size(), 8u);
  click(startKeyboard);
  click(presetName);
  for (const int key : {KEY_N, KEY_I, KEY_G, KEY_H, KEY_T}) keyboard_->tap(key);
  click(savePreset);
  pointAt(nowhere);
  lookAtWindow();
  EXPECT_NE(session_->picture().part(title), start);
  EXPECT_EQ(edges(), before);
}

}  // namespace
}  // namespace vorrin::machine
