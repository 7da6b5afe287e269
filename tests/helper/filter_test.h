#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <set>
#include <span>
#include <utility>
#include <variant>
#include <vector>

#include "input_helper/filter.h"

namespace vorrin::input_helper {

inline constexpr KeyboardId board = 3;
inline constexpr KeyboardId otherBoard = 4;

inline InputEvent key(int code, int value) {
  return {EV_KEY, static_cast<std::uint16_t>(code), value};
}
inline InputEvent scanCode(int value) {
  return {EV_MSC, MSC_SCAN, value};
}

/// A filter whose world is recorded, with the typing, the clock and the main program's answers as
/// the tests have them.
class FilterTest : public testing::Test {
 protected:
  FilterTest() {
    filter.addKeyboard(board, {}, now);
    filter.addKeyboard(otherBoard, {}, now);
    filter.announce(now);
  }

  /// Lets time pass until `later` has gone by, serving every deadline on the way.
  void pass(std::chrono::milliseconds later) {
    const auto end = now + later;
    for (auto due = filter.nextDeadline(); due && *due <= end; due = filter.nextDeadline()) {
      now = std::max(now, *due) + std::chrono::milliseconds(1);
      filter.advance(now);
    }
    now = end;
  }

  void configure(std::initializer_list<std::uint16_t> keys, bool enabled = true) {
    unsigned set = 0;
    for (const auto key : keys) set |= helper_protocol::shortcutSet(key);
    filter.configure({enabled, static_cast<helper_protocol::ShortcutSet>(set)}, now);
  }

  void grabWithTab() {
    configure({KEY_TAB});
    pass(Filter::startGap + std::chrono::milliseconds(1));
    ASSERT_THAT(grabbed, testing::ElementsAre(board, otherBoard));
    forget();
  }

  void receive(Frame frame, KeyboardId id = board) {
    filter.receive(id, std::move(frame), now, now);
  }
  void press(int code, KeyboardId id = board) { receive({key(code, 1)}, id); }
  void release(int code, KeyboardId id = board) { receive({key(code, 0)}, id); }

  void answer(bool swallow) {
    const auto asked = std::get<helper_protocol::KeyMoved>(sent.back());
    filter.answer({asked.question, swallow}, now);
  }

  void forget() {
    emitted.clear();
    sent.clear();
  }

  Moment now{std::chrono::milliseconds(1'000'000)};
  std::set<KeyboardId> grabbed;
  std::set<KeyboardId> busy;
  std::vector<Frame> emitted;
  std::vector<helper_protocol::FromHelper> sent;
  bool panicked = false;
  Filter filter{{
      .grab =
          [this](KeyboardId id) {
            if (busy.contains(id)) return GrabResult{GrabOutcome::busy, now};
            grabbed.insert(id);
            return GrabResult{GrabOutcome::grabbed, now};
          },
      .ungrab =
          [this](KeyboardId id) {
            grabbed.erase(id);
            return now;
          },
      .emit =
          [this](KeyboardId, std::span<const InputEvent> frame) {
            emitted.emplace_back(frame.begin(), frame.end());
          },
      .send = [this](const helper_protocol::FromHelper& message) { sent.push_back(message); },
      .panic = [this] { panicked = true; },
  }};
};

/// With both keyboards grabbed, Tab as a shortcut, and nothing recorded.
class GrabbedFilter : public FilterTest {
 protected:
  GrabbedFilter() { grabWithTab(); }
};

}  // namespace vorrin::input_helper
