#include "platform/event_tap.h"

#include <utility>

#include "platform/macos/input/event_tap_native.h"

namespace vorrin {

EventTap::EventTap(std::shared_ptr<Native> native) : native_(std::move(native)) {}

std::optional<EventTap> EventTap::create(std::uint64_t mask, Callback callback,
                                         std::function<void()> invalidated) {
  auto native = Native::create(mask, callback, std::move(invalidated));
  if (!native) return std::nullopt;
  return EventTap(std::move(native));
}

void EventTap::addToMainRunLoop() const {
  native_->addToMainRunLoop();
}

void EventTap::setEnabled(bool enabled) const {
  native_->setEnabled(enabled);
}

// The system puts every key to the tap and keeps none for another program.

bool EventTap::claim(std::span<const std::uint16_t> /*keyCodes*/) const {
  return true;
}

bool EventTap::canClaim(std::span<const std::uint16_t> /*keyCodes*/) const {
  return true;
}

}  // namespace vorrin
