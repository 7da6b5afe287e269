#include <algorithm>
#include <csignal>
#include <functional>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

// A chosen key's press cuts its keyboard off from other programs until the program with the tap has
// answered. The program is stopped here, so that a moment lasts as long as the test wants.
struct CutOff : TapTest, testing::WithParamInterface<Source> {
  CutOff() { swallow("50 48"); }

  void press(std::uint16_t key) { user.press(key, GetParam()); }
  void release(std::uint16_t key) { user.release(key, GetParam()); }

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

INSTANTIATE_TEST_SUITE_P(Sources, CutOff, testing::Values(Source::keyboard, Source::xtest),
                         [](const auto& source) {
                           return source.param == Source::keyboard ? "Keyboard" : "Xtest";
                         });

constexpr unsigned lockState = 2;
constexpr unsigned buttonState = 0x100;

TEST_P(CutOff, a_key_held_since_before_is_released) {
  press(keys::a);
  whileCutOff([&] { release(keys::a); });
  EXPECT_EQ(keysOf(receivedInTheEnd()), "-38");
}

TEST_P(CutOff, two_keys_held_since_before_are_released) {
  press(keys::a);
  press(keys::b);
  whileCutOff([&] {
    release(keys::a);
    release(keys::b);
  });
  EXPECT_EQ(keysOf(receivedInTheEnd()), "-38 -56");
}

TEST_P(CutOff, a_key_that_has_repeated_is_released) {
  press(keys::a);
  client.readUntil([presses = 0](const ClientEvent& event) mutable {
    return event.kind == "KeyPress" && ++presses == 3;
  });
  whileCutOff([&] { release(keys::a); });
  const std::vector<ClientEvent> events = receivedInTheEnd();
  EXPECT_EQ(countOf(events, "KeyRelease"), 1U);
  EXPECT_EQ(events.back().kind, "KeyRelease");
}

TEST_P(CutOff, a_key_released_and_pressed_again_is_down_until_its_next_release) {
  press(keys::a);
  whileCutOff([&] {
    release(keys::a);
    press(keys::a);
  });
  EXPECT_EQ(keysOf(receivedInTheEnd()), "-38 +38");
  release(keys::a);
  EXPECT_EQ(keysOf(received()), "-38");
}

TEST_P(CutOff, a_key_pressed_is_released_when_it_is_let_go_later) {
  whileCutOff([&] { press(keys::a); });
  EXPECT_EQ(keysOf(receivedInTheEnd()), "+38");
  release(keys::a);
  EXPECT_EQ(keysOf(received()), "-38");
}

TEST_P(CutOff, keys_typed_arrive_in_order) {
  whileCutOff([&] {
    for (const std::uint16_t key : {keys::a, keys::b, keys::a, keys::a}) {
      press(key);
      release(key);
    }
  });
  EXPECT_EQ(textOf(receivedInTheEnd()), "abaa");
}

TEST_P(CutOff, keys_are_released_when_a_second_shortcut_is_pressed) {
  press(keys::a);
  whileCutOff([&] {
    press(keys::tab);
    release(keys::a);
    release(keys::tab);
  });
  EXPECT_EQ(keysOf(receivedInTheEnd()), "-38");
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
  client.readUntil([](const ClientEvent& event) { return event.kind == "ButtonPress"; });
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
