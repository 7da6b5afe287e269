#include "platform/linux/input/helper/tap.h"

#include <algorithm>
#include <utility>

#include "platform/linux/input/key_codes.h"

namespace vorrin::helper {

using namespace helper_protocol;

namespace {

/// The keys that can be shortcuts, in the kernel's numbers; others are never asked about.
std::vector<std::uint16_t> shortcutsAmong(std::span<const std::uint16_t> keyCodes) {
  std::vector<std::uint16_t> keys;
  for (const auto code : keyCodes) {
    const auto key = evdevCode(code);
    if (key && isShortcutKey(*key)) keys.push_back(*key);
  }
  return keys;
}

std::uint64_t flagsOf(const Modifiers& modifiers) {
  std::uint64_t flags = 0;
  if (modifiers.shift) flags |= event_flags::maskShift;
  if (modifiers.control) flags |= event_flags::maskControl;
  if (modifiers.alternate) flags |= event_flags::maskAlternate;
  if (modifiers.command) flags |= event_flags::maskCommand;
  return flags;
}

}  // namespace

Tap::Tap(std::uint64_t mask, EventTap::Callback callback, std::function<void()> invalidated,
         Configured configured)
    : mask_(mask),
      callback_(callback),
      invalidated_(std::move(invalidated)),
      configured_(std::move(configured)) {}

Tap::~Tap() {
  attached_ = false;
  configure();
}

void Tap::addToMainRunLoop() {
  attached_ = true;
  configure();
}

void Tap::setEnabled(bool enabled) {
  enabled_ = enabled;
  configure();
}

bool Tap::claim(std::span<const std::uint16_t> keyCodes) {
  auto keys = shortcutsAmong(keyCodes);
  if (keys_ != keys) {
    keys_ = std::move(keys);
    configure();
  }
  return canClaim(keyCodes);
}

bool Tap::canClaim(std::span<const std::uint16_t> /*keyCodes*/) const {
  return configured_ != nullptr;
}

void Tap::configure() const {
  if (!configured_) return;
  Configure configuration{attached_ && enabled_, static_cast<std::uint8_t>(keys_.size()), {}};
  std::ranges::copy(keys_, configuration.keys.begin());
  configured_(configuration);
}

TapVerdict Tap::call(const KeyMoved& moved) const {
  const auto type = moved.down ? EventType::keyDown : EventType::keyUp;
  const auto virtualKey = virtualKeyOfEvdev(moved.key);
  const bool wanted = (mask_ >> static_cast<std::uint32_t>(type) & 1) != 0;
  if (!attached_ || !enabled_ || !wanted || !virtualKey) return TapVerdict::pass;
  return callback_({.type = type,
                    .keyCode = *virtualKey,
                    .autorepeat = moved.repeated ? 1 : 0,
                    .flags = flagsOf(moved.modifiers)});
}

bool Tap::decide(const Question& question) const {
  return call({question.key, true, false, question.modifiers}) == TapVerdict::swallow;
}

void Tap::tell(const KeyMoved& moved) const {
  // A repeat and a release follow their press whatever the verdict, and Escape is never held back.
  [[maybe_unused]] const auto verdict = call(moved);
}

void Tap::tellDisabled(DisableReason reason) {
  if (!attached_ || !std::exchange(enabled_, false)) return;
  const bool late = reason == DisableReason::noAnswer;
  callback_({.type = late ? EventType::tapDisabledByTimeout : EventType::tapDisabledByUserInput});
}

void Tap::end() {
  configured_ = nullptr;
  attached_ = false;
}

void Tap::invalidate() {
  end();
  const auto invalidated = std::move(invalidated_);
  if (invalidated) invalidated();
}

}  // namespace vorrin::helper
