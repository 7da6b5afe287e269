#include "platform/linux/input/x11/key_flow.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>

namespace vorrin::x11 {

namespace {

// A shortcut that was pressed longer ago than this does nothing any more. Whoever sees no effect
// for a second presses again; taking up both presses after a stall would undo the user's wish.
constexpr std::int32_t staleAfter = 1000;

/// The servers of this machine stamp events with its monotonic clock, in milliseconds. The others,
/// which need not, have a network name in DISPLAY, and nothing of theirs is too old.
bool isStale(std::uint32_t time) {
  const char* const display = std::getenv("DISPLAY");
  const bool sharesClock = display != nullptr && *display == ':';
  const std::chrono::milliseconds now = std::chrono::floor<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
  const auto age = static_cast<std::uint32_t>(now.count()) - time;
  return sharesClock && static_cast<std::int32_t>(age) > staleAfter;
}

}  // namespace

KeyFlow::KeyFlow(KeyGrabs& grabs, const KeyboardMap& map, Poster& poster, Ask ask)
    : grabs_(grabs), map_(map), poster_(poster), ask_(std::move(ask)) {}

bool KeyFlow::claim(std::span<const std::uint16_t> virtualKeys) {
  if (std::ranges::equal(claimed_, virtualKeys)) return true;
  claimed_.assign(virtualKeys.begin(), virtualKeys.end());
  return claimAgain();
}

bool KeyFlow::claimAgain() {
  if (grabs_.hold(keycodesOf(claimed_))) return true;
  claimed_.clear();
  return false;
}

bool KeyFlow::canClaim(std::span<const std::uint16_t> virtualKeys) const {
  return grabs_.canHold(keycodesOf(virtualKeys));
}

KeySet KeyFlow::keycodesOf(std::span<const std::uint16_t> virtualKeys) const {
  KeySet codes;
  for (const auto virtualKey : virtualKeys) {
    if (const auto code = map_.keycode(virtualKey)) codes.set(code);
  }
  return codes;
}

void KeyFlow::readRaw(const xcb_input_raw_key_press_event_t& event) {
  const auto code = static_cast<xcb_keycode_t>(event.detail);
  const bool down = event.event_type == XCB_INPUT_RAW_KEY_PRESS;
  const bool isEscape = map_.isEscape(code);
  // The grab that this press starts tells of it again.
  if (down && !isEscape && grabs_.holds(code)) return;
  if (poster_.isOwn(event.full_sequence, code, down)) return;
  if (isEscape) hear({}, escapeKey, down);
  if (down) return;
  if (const auto* key = find(event.deviceid, code)) release(*key);
}

void KeyFlow::readCaught(const xcb_input_key_press_event_t& event) {
  const auto code = static_cast<xcb_keycode_t>(event.detail);
  isCutOff_ = true;
  if (event.event_type == XCB_INPUT_KEY_PRESS) return readPress(event);
  if (const auto* key = find(event.deviceid, code)) return release(*key);
  // It was pressed before this keyboard was cut off: the window in front still has it down.
  sendRelease(code);
}

void KeyFlow::readPress(const xcb_input_key_press_event_t& event) {
  const auto code = static_cast<xcb_keycode_t>(event.detail);
  if ((event.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0) {
    const auto* key = find(event.deviceid, code);
    if (key != nullptr && key->shown) hear(*key, *key->shown, true, true);
    return;
  }
  auto& key = caught_.emplace_back(CaughtKey{event.deviceid, code});
  const auto shortcut = claimedKey(code);
  const bool isOwn = poster_.isOwn(event.full_sequence, code, true);
  const bool isEscape = map_.isEscape(code);
  const bool isAlone = ((map_.modifiers() | event.mods.effective) & ~map_.locks()) == 0;
  if (isEscape && !isOwn) hear({}, escapeKey, true);
  if (!shortcut || !isAlone || isOwn || isEscape) return sendPress(key);
  if (isStale(event.time)) return;
  key.shown = shortcut;
  hear(key, *shortcut, true);
}

void KeyFlow::release(const CaughtKey& key) {
  // After what the tap has not seen yet.
  if (key.shown) return hear(key, *key.shown, false);
  if (key.sentOn) sendRelease(key.keycode);
  forget(key);
}

void KeyFlow::endGrabs() {
  if (std::exchange(isCutOff_, false)) grabs_.endGrabs();
}

bool KeyFlow::judgeNext() {
  if (heard_.empty()) return false;
  const Heard next = heard_.front();
  heard_.pop_front();
  auto* const key = find(next.device, next.keycode);
  const bool repeated = next.event.autorepeat != 0;
  // A key that was sent on is XTEST's now, and repeats there.
  if (repeated && key != nullptr && key->sentOn) return true;
  const TapVerdict verdict = ask_(next.event);
  if (key == nullptr || repeated) return true;
  if (next.event.type == EventType::keyUp) {
    key->shown.reset();
    release(*key);
  } else if (verdict == TapVerdict::pass) {
    sendPress(*key);
  }
  return true;
}

void KeyFlow::leaveLost() {
  const auto keys = caught_;
  for (const CaughtKey& key : keys) {
    if (std::ranges::count(grabs_.keyboards(), key.device) == 0) release(key);
  }
}

void KeyFlow::leaveAll() {
  for (const CaughtKey& key : caught_) {
    if (key.sentOn) sendRelease(key.keycode);
  }
}

void KeyFlow::hear(const CaughtKey& key, std::uint16_t virtualKey, bool down, bool repeated) {
  heard_.push_back({.event = {.type = down ? EventType::keyDown : EventType::keyUp,
                              .keyCode = virtualKey,
                              .autorepeat = repeated ? 1 : 0},
                    .device = key.device,
                    .keycode = key.keycode});
}

std::optional<std::uint16_t> KeyFlow::claimedKey(xcb_keycode_t keycode) const {
  const auto found = std::ranges::find(
      claimed_, keycode, [this](std::uint16_t virtualKey) { return map_.keycode(virtualKey); });
  return found == claimed_.end() ? std::nullopt : std::optional(*found);
}

KeyFlow::CaughtKey* KeyFlow::find(Device device, xcb_keycode_t keycode) {
  const auto found = std::ranges::find_if(caught_, [=](const CaughtKey& key) {
    return key.device == device && key.keycode == keycode;
  });
  return found == caught_.end() ? nullptr : &*found;
}

void KeyFlow::forget(const CaughtKey& key) {
  const auto* const found = find(key.device, key.keycode);
  if (found != nullptr) caught_.erase(caught_.begin() + (found - caught_.data()));
}

void KeyFlow::sendPress(CaughtKey& key) {
  // What is sent on comes from XTEST's keyboard, which may be the one that is cut off. If the key
  // is that keyboard's own it is down there already.
  const bool isTaken = grabs_.holds(key.keycode);
  grabs_.endGrabs();
  if (isTaken) grabs_.lift(key.keycode);
  poster_.key(key.keycode, false);
  poster_.key(key.keycode, true);
  if (isTaken) grabs_.restore(key.keycode);
  key.sentOn = true;
}

void KeyFlow::sendRelease(xcb_keycode_t keycode) {
  grabs_.endGrabs();
  poster_.key(keycode, false);
}

}  // namespace vorrin::x11
