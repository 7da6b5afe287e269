#include "platform/event_tap.h"

#include <utility>

#include "platform/fake/system/fake_system.h"
#include "platform/fake/system/tap_state.h"

namespace vorrin {

namespace {

void endIfWished(fake::TapState& tap) {
  if (!fake::system().endsTaps || !std::exchange(tap.alive, false)) return;
  const auto invalidated = std::exchange(tap.invalidated, nullptr);
  invalidated();
}

}  // namespace

EventTap::EventTap(std::shared_ptr<Native> native) : native_(std::move(native)) {}

std::optional<EventTap> EventTap::create(std::uint64_t mask,
                                         std::span<const std::uint16_t> swallowable,
                                         Callback callback, std::function<void()> invalidated) {
  // In memory of its own, given back with the last reference: the sanitizer sees who uses it later.
  auto native = std::shared_ptr<Native>(new Native);
  native->mask = mask;
  native->swallowable = {swallowable.begin(), swallowable.end()};
  native->callback = callback;
  native->invalidated = std::move(invalidated);
  fake::system().tapCreations.push_back({mask, native->swallowable});
  if (fake::system().refusesTaps) return std::nullopt;
  fake::registerTap(native);
  return EventTap(std::move(native));
}

void EventTap::addToMainRunLoop() const {
  ++fake::system().tapsAdded;
  native_->added = true;
  endIfWished(*native_);
}

void EventTap::setEnabled(bool enabled) const {
  fake::system().tapSwitches.push_back(enabled);
  native_->enabled = enabled;
  endIfWished(*native_);
}

bool EventTap::setSwallowable(std::span<const std::uint16_t> keyCodes) const {
  std::set<std::uint16_t> keys{keyCodes.begin(), keyCodes.end()};
  fake::system().swallowableChanges.push_back(keys);
  if (fake::system().refusesKeys) return false;
  native_->swallowable = std::move(keys);
  return true;
}

}  // namespace vorrin
