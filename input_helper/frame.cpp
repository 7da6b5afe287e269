#include "input_helper/frame.h"

#include <algorithm>
#include <array>

namespace vorrin::input_helper {
namespace {

constexpr std::array panicChord = {KEY_ESC, KEY_BACKSPACE, KEY_ENTER};

}  // namespace

bool isKey(const InputEvent& event) {
  return event.type == EV_KEY && event.code < KEY_CNT;
}

bool goesOn(const InputEvent& event) {
  return event.type != EV_LED && event.type != EV_SND && event.type != EV_REP &&
         event.type != EV_MSC;
}

void followKeys(std::span<const InputEvent> frame, KeySet& keys) {
  for (const auto& event : frame) {
    if (isKey(event)) keys.set(event.code, event.value != released);
  }
}

Frame releasesOf(const KeySet& keys) {
  Frame frame;
  for (std::size_t key = 0; key < KEY_CNT; ++key) {
    if (keys.test(key)) frame.push_back({EV_KEY, static_cast<std::uint16_t>(key), released});
  }
  return frame;
}

bool holdsPanicChord(const KeySet& keys) {
  return std::ranges::all_of(panicChord, [&](int key) { return keys.test(std::size_t(key)); });
}

}  // namespace vorrin::input_helper
