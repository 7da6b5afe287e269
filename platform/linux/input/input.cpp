#include <memory>
#include <utility>
#include <variant>

#include "platform/accessibility.h"
#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/input/helper/backend.h"
#include "platform/linux/input/input_backend.h"
#include "platform/linux/input/input_way.h"
#include "platform/linux/input/x11/backend.h"

namespace vorrin {

namespace {

using Backend = std::variant<x11::Backend, helper::Backend>;

Backend& backend() {
  static Backend backend = inputWay() == InputWay::x11
                               ? Backend(std::in_place_type<x11::Backend>)
                               : Backend(std::in_place_type<helper::Backend>);
  return backend;
}

}  // namespace

helper::Backend* helperBackend() {
  return std::get_if<helper::Backend>(&backend());
}

struct EventTap::Native {
  std::variant<std::shared_ptr<x11::Tap>, std::shared_ptr<helper::Tap>> tap;
};

EventTap::EventTap(std::shared_ptr<Native> native) : native_(std::move(native)) {}

std::optional<EventTap> EventTap::create(std::uint64_t mask, Callback callback,
                                         std::function<void()> invalidated) {
  return std::visit(
      [&](auto& way) -> std::optional<EventTap> {
        auto tap = way.createTap(mask, callback, std::move(invalidated));
        if (!tap) return std::nullopt;
        return EventTap(std::shared_ptr<Native>(new Native{std::move(tap)}));
      },
      backend());
}

void EventTap::addToMainRunLoop() const {
  std::visit([](const auto& tap) { tap->addToMainRunLoop(); }, native_->tap);
}

void EventTap::setEnabled(bool enabled) const {
  std::visit([=](const auto& tap) { tap->setEnabled(enabled); }, native_->tap);
}

bool EventTap::claim(std::span<const std::uint16_t> keyCodes) const {
  return std::visit([=](const auto& tap) { return tap->claim(keyCodes); }, native_->tap);
}

bool EventTap::canClaim(std::span<const std::uint16_t> keyCodes) const {
  return std::visit([=](const auto& tap) { return tap->canClaim(keyCodes); }, native_->tap);
}

std::optional<PointerLocation> pointerLocation() {
  return std::visit([](auto& way) { return way.pointerLocation(); }, backend());
}

void postEvents(std::span<const SyntheticEvent> events) {
  std::visit([=](auto& way) { way.post(events); }, backend());
}

bool isProcessTrusted() {
  const auto* const helper = helperBackend();
  return helper == nullptr || helper->isTrusted();
}

bool isProcessTrustedWithPrompt() {
  // Here a connection is wanted.
  sayInputWay();
  auto* const helper = helperBackend();
  return helper == nullptr || helper->isTrustedWithPrompt();
}

}  // namespace vorrin
