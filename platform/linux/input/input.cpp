#include <memory>
#include <utility>
#include <variant>

#include "platform/accessibility.h"
#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/input/helper/backend.h"
#include "platform/linux/input/input_backend.h"
#include "platform/linux/input/input_way.h"
#include "platform/linux/input/x11/tap.h"

namespace vorrin {

namespace {

/// What is posted on an X server goes over the connection of the tap.
std::weak_ptr<x11::Tap> x11Tap;

}  // namespace

helper::Backend* helperBackend() {
  static const auto backend =
      inputWay() == InputWay::helper ? std::make_unique<helper::Backend>() : nullptr;
  return backend.get();
}

struct EventTap::Native {
  std::variant<std::shared_ptr<x11::Tap>, std::shared_ptr<helper::Tap>> tap;
};

EventTap::EventTap(std::shared_ptr<Native> native) : native_(std::move(native)) {}

std::optional<EventTap> EventTap::create(std::uint64_t mask, Callback callback,
                                         std::function<void()> invalidated) {
  const auto made = [](auto tap) {
    return tap ? std::optional(EventTap(std::shared_ptr<Native>(new Native{std::move(tap)})))
               : std::nullopt;
  };
  if (auto* const helper = helperBackend()) {
    return made(helper->createTap(mask, callback, std::move(invalidated)));
  }
  std::shared_ptr<x11::Tap> tap = x11::Tap::create(mask, callback, std::move(invalidated));
  x11Tap = tap;
  return made(std::move(tap));
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

/// Clicks happen at the pointer wherever it is, so the numbers stay 0.
std::optional<PointerLocation> pointerLocation() {
  return PointerLocation{};
}

void postEvents(std::span<const SyntheticEvent> events) {
  if (const auto* const helper = helperBackend()) return helper->post(events);
  if (const auto tap = x11Tap.lock()) tap->post(events);
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
