#include "bridge/keyboard_listener.h"

#include <limits>
#include <set>
#include <vector>

#include "bridge/event_synthesis.h"
#include "bridge/program_engine.h"
#include "platform/accessibility.h"
#include "platform/application_activity.h"
#include "platform/fatal_error.h"
#include "platform/workspace.h"

namespace vorrin {
namespace {

constexpr std::uint64_t modifierFlags = event_flags::maskCommand | event_flags::maskControl |
                                        event_flags::maskAlternate | event_flags::maskShift;

using Keys = std::set<std::uint16_t>;

std::vector<std::uint16_t> listOf(const Keys& keys) {
  return {keys.begin(), keys.end()};
}

Keys enabledShortcuts() {
  Keys keys;
  for (const int macro : {0, 1}) {
    if (engine.enabled[macro]) keys.insert(engine.keys[macro]);
  }
  return keys;
}

/// False when another program holds one of the keys.
bool claimAsThingsStand(const EventTap& tap) {
  if (!sessionIsActive()) return tap.claim({});
  Keys keys = enabledShortcuts();
  if (applicationIsActive()) return tap.claim(listOf(engine.held)) && tap.canClaim(listOf(keys));
  keys.insert(engine.held.begin(), engine.held.end());
  return tap.claim(listOf(keys));
}

void dropTap() {
  engine.tap.reset();
  engine.held.clear();
  engine.stopAll();
}

std::uint16_t checkedKeyCode(std::int64_t keyCode) {
  if (keyCode < 0) fatalError("Negative value is not representable");
  if (keyCode > std::numeric_limits<std::uint16_t>::max()) {
    fatalError("Not enough bits to represent the passed value");
  }
  return static_cast<std::uint16_t>(keyCode);
}

void recoverDisabledTap() {
  engine.stopAll();
  engine.held.clear();
  if (engine.tap) engine.tap->setEnabled(true);
}

/// Typing into this program's own window triggers no shortcut and is never swallowed. A key pressed
/// before the window became active still has to be released for the engine, and Escape always
/// counts.
bool concernsEngine(std::uint16_t key) {
  return !applicationIsActive() || key == escapeKey || engine.held.contains(key);
}

}  // namespace

std::uint64_t eventMaskBit(EventType type) {
  const auto shift = static_cast<std::uint32_t>(type);
  return shift < 64 ? std::uint64_t{1} << shift : 0;
}

void connectKeyboardListener() {
  if (engine.tap || !isProcessTrustedWithPrompt()) return;
  const std::uint64_t mask = eventMaskBit(EventType::keyDown) | eventMaskBit(EventType::keyUp);
  engine.tap = EventTap::create(mask, keyboardTapCallback, dropTap);
  if (!engine.tap) return;
  engine.tap->addToMainRunLoop();
  engine.tap->setEnabled(true);
  updateClaimedKeys();
}

TapVerdict keyboardTapCallback(const TapEvent& event) {
  if (event.type == EventType::tapDisabledByTimeout ||
      event.type == EventType::tapDisabledByUserInput) {
    recoverDisabledTap();
    return TapVerdict::pass;
  }
  if (event.userData == marker) return TapVerdict::pass;
  const std::uint16_t key = checkedKeyCode(event.keyCode);
  if (!sessionIsActive() && key != escapeKey) {
    // What is typed there is nobody's business. Its keys only count as released.
    engine.held.erase(key);
    return TapVerdict::pass;
  }
  if (!concernsEngine(key)) return TapVerdict::pass;
  const bool swallow = engine.handle(key, event.type == EventType::keyDown, event.autorepeat != 0,
                                     (event.flags & modifierFlags) != 0);
  return swallow ? TapVerdict::swallow : TapVerdict::pass;
}

void updateClaimedKeys() {
  if (engine.tap && !claimAsThingsStand(*engine.tap)) dropTap();
}

}  // namespace vorrin
