#include <utility>

#include "platform/accessibility.h"
#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/x11/backend.h"

namespace vorrin {

namespace {

x11::Backend& backend() {
  static x11::Backend backend;
  return backend;
}

}  // namespace

struct EventTap::Native {
  std::unique_ptr<x11::Tap> tap;
};

EventTap::EventTap(std::shared_ptr<Native> native) : native_(std::move(native)) {}

std::optional<EventTap> EventTap::create(std::uint64_t mask,
                                         std::span<const std::uint16_t> swallowable,
                                         Callback callback, std::function<void()> invalidated) {
  std::unique_ptr<x11::Tap> tap =
      backend().createTap(mask, swallowable, callback, std::move(invalidated));
  if (!tap) return std::nullopt;
  return EventTap(std::shared_ptr<Native>(new Native{std::move(tap)}));
}

void EventTap::addToMainRunLoop() const {
  native_->tap->addToMainRunLoop();
}

void EventTap::setEnabled(bool enabled) const {
  native_->tap->setEnabled(enabled);
}

bool EventTap::setSwallowable(std::span<const std::uint16_t> keyCodes) const {
  return native_->tap->setSwallowable(keyCodes);
}

std::optional<PointerLocation> pointerLocation() {
  return backend().pointerLocation();
}

void postEvents(std::span<const SyntheticEvent> events) {
  backend().post(events);
}

bool isProcessTrusted() {
  return backend().isTrusted();
}

bool isProcessTrustedWithPrompt() {
  return backend().isTrusted();
}

}  // namespace vorrin
