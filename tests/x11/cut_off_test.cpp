#include <algorithm>
#include <csignal>
#include <functional>
#include <sstream>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

// A chosen key's press cuts its keyboard off from other programs until the program with the tap has
// answered. The program is stopped here, so that a moment lasts as long as the test wants.
struct CutOff : TapTest, testing::WithParamInterface<Source> {
  CutOff() { swallow("50 48"); }

  void press(std::uint16_t key) { user.press(key, GetParam()); }
  void release(std::uint16_t key) { user.release(key, GetParam()); }

  /// Presses (+) and releases (-) these keys: "+a +Tab -a".
  void move(const std::string& keyMoves) {
    std::istringstream moves(keyMoves);
    for (std::string word; moves >> word;) {
      const std::uint16_t key = word.ends_with("Tab") ? keys::tab
                                : word.back() == 'a'  ? keys::a
                                                      : keys::b;
      word.front() == '+' ? press(key) : release(key);
    }
  }

  /// Has the user do this with the backtick key held and the keyboard cut off by it.
  void whileCutOff(const std::function<void()>& deed) {
    received();
    tap.process().signal(SIGSTOP);
    press(keys::backtick);
    deed();
    tap.process().signal(SIGCONT);
  }

  /// Lets the backtick key go too.
  std::vector<ClientEvent> receivedInTheEnd() {
    release(keys::backtick);
    return received();
  }

  /// The modifiers that a key typed now has for the client.
  unsigned modifiersNow() {
    user.tap(keys::a, GetParam());
    const std::vector<ClientEvent> events = received();
    EXPECT_EQ(keysOf(events), tapOf(keys::a));
    return events.empty() ? 0 : events.front().state;
  }
};

INSTANTIATE_TEST_SUITE_P(Sources, CutOff, testing::ValuesIn(sources), nameOf);

constexpr unsigned lockState = 2;
constexpr unsigned buttonState = 0x100;

struct Case {
  const char* before;
  const char* whileCutOff;
  const char* arrives;
  const char* afterwards = "";
  const char* arrivesThen = "";
};

// The client's key codes are 38 for "a" and 56 for "b".
constexpr Case cases[] = {{"+a", "-a", "-38"},
                          {"+a +b", "-a -b", "-38 -56"},
                          {"+a", "-a +a", "-38 +38", "-a", "-38"},
                          {"", "+a", "+38", "-a", "-38"},
                          {"", "+a -a +b -b +a -a +a -a", "+38 -38 +56 -56 +38 -38 +38 -38"},
                          {"+a", "+Tab -a -Tab", "-38"}};

TEST_P(CutOff, keys_arrive_in_order_and_none_stays_down) {
  for (const Case& row : cases) {
    SCOPED_TRACE(row.whileCutOff);
    move(row.before);
    whileCutOff([&] { move(row.whileCutOff); });
    EXPECT_EQ(keysOf(receivedInTheEnd()), row.arrives);
    move(row.afterwards);
    EXPECT_EQ(keysOf(received()), row.arrivesThen);
  }
}

TEST_P(CutOff, a_key_that_has_repeated_is_released) {
  press(keys::a);
  client.readUntil(nth(3, "KeyPress"));
  whileCutOff([&] { release(keys::a); });
  const std::vector<ClientEvent> events = receivedInTheEnd();
  EXPECT_EQ(countOf(events, "KeyRelease"), 1U);
  EXPECT_EQ(events.back().kind, "KeyRelease");
}

TEST_P(CutOff, caps_lock_held_since_before_stays_on_and_can_be_turned_off) {
  user.pressEvdev(modifier_keys::capsLock, GetParam());
  whileCutOff([&] { user.releaseEvdev(modifier_keys::capsLock, GetParam()); });
  receivedInTheEnd();
  EXPECT_EQ(modifiersNow(), lockState);
  user.tapEvdev(modifier_keys::capsLock, GetParam());
  received();
  EXPECT_EQ(modifiersNow(), 0U);
}

TEST_P(CutOff, shift_pressed_counts_until_it_is_released) {
  whileCutOff([&] {
    user.pressEvdev(modifier_keys::shift, GetParam());
    press(keys::a);
    release(keys::a);
  });
  const std::vector<ClientEvent> events = receivedInTheEnd();
  ASSERT_EQ(keysOf(events), "+50 +38 -38");
  EXPECT_EQ(events[1].state, 1U);
  user.releaseEvdev(modifier_keys::shift, GetParam());
  received();
  EXPECT_EQ(modifiersNow(), 0U);
}

TEST_P(CutOff, shift_held_since_before_leaves_nothing_cut_off) {
  user.pressEvdev(modifier_keys::shift, GetParam());
  whileCutOff([&] { user.releaseEvdev(modifier_keys::shift, GetParam()); });
  EXPECT_EQ(keysOf(receivedInTheEnd()), "+49 -50 -49");
  EXPECT_EQ(modifiersNow(), 0U);
}

TEST_P(CutOff, a_mouse_button_is_released) {
  user.pointAt(client.window());
  user.pressButton();
  // The window manager looks at the press first.
  client.readUntil(nth(1, "ButtonPress"));
  whileCutOff([&] { user.releaseButton(); });
  EXPECT_EQ(countOf(receivedInTheEnd(), "ButtonRelease"), 1U);
  EXPECT_EQ(modifiersNow() & buttonState, 0U);
}

TEST_P(CutOff, a_key_is_released_when_the_tap_goes_at_that_moment) {
  press(keys::a);
  whileCutOff([&] {
    release(keys::a);
    tap.start("drop");
  });
  ASSERT_TRUE(tap.readUpTo("drop yes"));
  release(keys::backtick);
  EXPECT_EQ(std::ranges::count_if(client.readAll(user), releaseOf(keys::a)), 1);
}

// Nobody is left to send its release on.
TEST_P(CutOff, a_key_let_go_when_the_program_is_killed_at_that_moment_is_free_after_its_next_tap) {
  press(keys::a);
  whileCutOff([&] {
    release(keys::a);
    killTap();
  });
  release(keys::backtick);
  press(keys::a);
  release(keys::a);
  const std::vector<ClientEvent> events = client.readAll(user);
  EXPECT_EQ(std::ranges::count_if(events, releaseOf(keys::a)), 1) << keysOf(events);
}

}  // namespace
}  // namespace vorrin::x11_tests
