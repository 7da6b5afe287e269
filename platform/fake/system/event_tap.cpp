#include "platform/event_tap.h"

#include <algorithm>
#include <utility>

#include "platform/fake/system/fake_system.h"
#include "platform/fake/system/tap_state.h"

namespace vorrin {

EventTap::EventTap(std::shared_ptr<Native> native) : native_(std::move(native)) {}

std::optional<EventTap> EventTap::create(std::uint64_t mask, Callback callback,
                                         std::function<void()> invalidated) {
  // In memory of its own, given back with the last reference: the sanitizer sees who uses it later.
  auto native = std::shared_ptr<Native>(new Native);
  native->mask = mask;
  native->callback = callback;
  native->invalidated = std::move(invalidated);
  fake::system().tapMasks.push_back(mask);
  if (fake::system().refusesTaps) return std::nullopt;
  fake::registerTap(native);
  return EventTap(std::move(native));
}

void EventTap::addToMainRunLoop() const {
  native_->added = true;
}

void EventTap::setEnabled(bool enabled) const {
  fake::system().tapSwitches.push_back(enabled);
  native_->enabled = enabled;
}

bool EventTap::claim(std::span<const std::uint16_t> keyCodes) const {
  native_->claimed.clear();
  if (!canClaim(keyCodes)) return false;
  native_->claimed = {keyCodes.begin(), keyCodes.end()};
  return true;
}

bool EventTap::canClaim(std::span<const std::uint16_t> keyCodes) const {
  return std::ranges::none_of(
      keyCodes, [](std::uint16_t key) { return fake::system().keysOfOthers.contains(key); });
}

}  // namespace vorrin
