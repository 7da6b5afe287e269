#include "platform/linux/input/helper/tap.h"

#include <utility>

#include "platform/linux/input/key_codes.h"

namespace vorrin::helper {

using namespace helper_protocol;

namespace {

/// The keys that can be shortcuts; others are never asked about.
ShortcutSet shortcutsAmong(std::span<const std::uint16_t> keyCodes) {
  unsigned keys = 0;
  for (const auto code : keyCodes) {
    if (const auto key = evdevCode(code)) keys |= shortcutSet(*key);
  }
  return static_cast<ShortcutSet>(keys);
}

}  // namespace

Tap::Tap(std::uint64_t mask, EventTap::Callback callback, std::function<void()> invalidated,
         Configured configured)
    : mask_(mask),
      callback_(callback),
      invalidated_(std::move(invalidated)),
      configured_(std::move(configured)) {}

Tap::~Tap() {
  setEnabled(false);
}

void Tap::setEnabled(bool enabled) {
  enabled_ = enabled;
  configure();
}

bool Tap::claim(std::span<const std::uint16_t> keyCodes) {
  const auto keys = shortcutsAmong(keyCodes);
  if (std::exchange(keys_, keys) != keys) configure();
  return canClaim(keyCodes);
}

bool Tap::canClaim(std::span<const std::uint16_t> /*keyCodes*/) const {
  return configured_ != nullptr;
}

void Tap::configure() const {
  if (configured_) configured_({enabled_, keys_});
}

TapVerdict Tap::tell(const KeyMoved& moved) const {
  const auto type = moved.down != 0 ? EventType::keyDown : EventType::keyUp;
  const auto virtualKey = virtualKeyOfEvdev(moved.key);
  const bool wanted = (mask_ >> static_cast<std::uint32_t>(type) & 1) != 0;
  if (!enabled_ || !wanted || !virtualKey) return TapVerdict::pass;
  return callback_({.type = type, .keyCode = *virtualKey, .autorepeat = moved.repeated});
}

void Tap::tellDisabled() {
  if (!std::exchange(enabled_, false)) return;
  callback_({.type = EventType::tapDisabledByTimeout});
}

void Tap::end() {
  configured_ = nullptr;
  enabled_ = false;
}

void Tap::invalidate() {
  end();
  const auto invalidated = std::move(invalidated_);
  if (invalidated) invalidated();
}

}  // namespace vorrin::helper
