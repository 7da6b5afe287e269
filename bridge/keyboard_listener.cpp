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

/// What the present tap was last told by `setSwallowable` or at its creation.
std::vector<std::uint16_t> swallowable;

/// Counts the taps made, so that news of an earlier tap's end is not taken for the present one's.
std::uint64_t tapGeneration = 0;

std::vector<std::uint16_t> keysToSwallow() {
  if (!sessionWasActive()) return {};
  std::set<std::uint16_t> keys = engine.held;
  if (!applicationIsActive()) {
    for (const int macro : {0, 1}) {
      if (engine.enabled[macro]) keys.insert(engine.keys[macro]);
    }
  }
  return {keys.begin(), keys.end()};
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
  // A copy, for the tap may end by itself during the call and engine.tap with it.
  if (const auto tap = engine.tap) tap->setEnabled(true);
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
  swallowable = keysToSwallow();
  const auto invalidated = [generation = ++tapGeneration] {
    if (generation == tapGeneration) dropTap();
  };
  engine.tap = EventTap::create(mask, swallowable, keyboardTapCallback, invalidated);
  if (!engine.tap) return;
  // A copy, for the tap may end by itself during either call and engine.tap with it.
  const EventTap tap = *engine.tap;
  tap.addToMainRunLoop();
  tap.setEnabled(true);
}

TapVerdict keyboardTapCallback(const TapEvent& event) {
  if (event.type == EventType::tapDisabledByTimeout ||
      event.type == EventType::tapDisabledByUserInput) {
    recoverDisabledTap();
    return TapVerdict::pass;
  }
  if (event.userData == marker) return TapVerdict::pass;
  const std::uint16_t key = checkedKeyCode(event.keyCode);
  if (!sessionIsActive()) {
    // What is typed there is nobody's business. Its keys only count as released.
    engine.held.erase(key);
    return TapVerdict::pass;
  }
  if (!concernsEngine(key)) return TapVerdict::pass;
  const bool swallow = engine.handle(key, event.type == EventType::keyDown, event.autorepeat != 0,
                                     (event.flags & modifierFlags) != 0);
  return swallow ? TapVerdict::swallow : TapVerdict::pass;
}

void updateSwallowableKeys() {
  if (!engine.tap) return;
  auto keys = keysToSwallow();
  if (keys == swallowable) return;
  // A copy, for the tap may end by itself during the call and engine.tap with it.
  const EventTap tap = *engine.tap;
  swallowable = keys;
  if (tap.setSwallowable(keys)) return;
  dropTap();
}

}  // namespace vorrin
