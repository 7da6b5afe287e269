#include "platform/linux/input/x11/poster.h"

#include <xcb/xtest.h>

#include <algorithm>

namespace vorrin::x11 {

void Poster::leftButton(bool down) {
  post(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
}

void Poster::key(xcb_keycode_t keycode, bool down) {
  posted_.push_back({post(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode), keycode, down});
}

bool Poster::isOwn(std::uint32_t sequence, xcb_keycode_t keycode, bool down) {
  // Those of earlier requests stay behind when the server made no event of them. Sequence numbers
  // start again at 0 after the last.
  const auto first = std::ranges::find_if(posted_, [=](const Posted& posted) {
    return static_cast<std::int32_t>(posted.sequence - sequence) >= 0;
  });
  posted_.erase(posted_.begin(), first);
  if (posted_.empty() || posted_.front() != Posted{sequence, keycode, down}) return false;
  posted_.erase(posted_.begin());
  return true;
}

std::uint32_t Poster::post(std::uint8_t type, std::uint8_t detail) {
  // With a time to come the server would hold up all other requests of this connection.
  constexpr std::uint32_t atOnce = XCB_CURRENT_TIME;
  return xcb_test_fake_input(connection_.get(), type, detail, atOnce, XCB_NONE, 0, 0, 0).sequence;
}

}  // namespace vorrin::x11
