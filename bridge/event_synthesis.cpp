#include "bridge/event_synthesis.h"

#include <optional>

#include "bridge/program_engine.h"
#include "platform/accessibility.h"
#include "platform/application_activity.h"
#include "platform/event_post.h"
#include "platform/fatal_error.h"
#include "platform/workspace.h"

namespace vorrin {
namespace {

using EventPair = std::array<SyntheticEvent, 2>;

EventPair keyPress(std::uint16_t keyCode) {
  return {{{.type = EventType::keyDown, .location = {}, .keyCode = keyCode, .userData = marker},
           {.type = EventType::keyUp, .location = {}, .keyCode = keyCode, .userData = marker}}};
}

EventPair click(PointerLocation location) {
  return {{{.type = EventType::leftMouseDown, .location = location, .userData = marker},
           {.type = EventType::leftMouseUp, .location = location, .userData = marker}}};
}

std::uint16_t digitKey() {
  if (engine.digit < 0 || engine.digit > 9) fatalError("Index out of range");
  return digits[static_cast<std::size_t>(engine.digit)];
}

/// Nothing when the pointer cannot be found.
std::optional<EventPair> actionOf(int macro) {
  if (macro == 0) return keyPress(digitKey());
  const auto location = pointerLocation();
  if (!location) return std::nullopt;
  return click(*location);
}

}  // namespace

bool macrosPermitted(bool settingsValid) {
  return settingsValid && engine.tap.has_value() && isProcessTrusted() && sessionIsActive();
}

void emitMacro(int macro, const std::function<void()>& refresh) {
  if (applicationIsActive() || !sessionIsActive()) return;
  if (!isProcessTrusted()) {
    engine.stopAll();
    if (refresh) refresh();
    return;
  }
  if (const auto events = actionOf(macro)) postEvents(*events);
}

}  // namespace vorrin
