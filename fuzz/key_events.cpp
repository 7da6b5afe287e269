// Streams of key events and of everything that may happen between them, as the listener meets them.

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstdint>
#include <set>

#include "bridge/event_synthesis.h"
#include "bridge/keyboard_listener.h"
#include "bridge/permission_watch.h"
#include "bridge/program_engine.h"
#include "platform/fake/system/fake_system.h"
#include "platform/fake/time/fake_time.h"
#include "platform/fatal_error.h"

using namespace vorrin;

namespace {

constexpr std::array<std::uint16_t, 9> keys{50, 48, 97, 98, 100, 101, 53, 0, 18};
constexpr std::array<std::uint16_t, 6> shortcuts{50, 48, 97, 98, 100, 101};
constexpr std::array<std::uint64_t, 8> modifiers{0,
                                                 0,
                                                 event_flags::maskAlphaShift,
                                                 event_flags::maskNumericPad,
                                                 event_flags::maskShift,
                                                 event_flags::maskControl,
                                                 event_flags::maskAlternate,
                                                 event_flags::maskCommand};
constexpr std::uint64_t modifierFlags = event_flags::maskShift | event_flags::maskControl |
                                        event_flags::maskAlternate | event_flags::maskCommand;

void startProgram() {
  fake::resetTime();
  fake::resetSystem();
  engine.held.clear();
  engine.enabled = {true, true};
  engine.intervals = {0.05, 0.001};
  engine.keys = {50, 48};
  engine.changed = nullptr;
  engine.permitted = [] { return macrosPermitted(true); };
  engine.emit = [](int macro) { emitMacro(macro, [] {}); };
  connectKeyboardListener();
}

void endProgram() {
  engine.changed = nullptr;
  engine.stopAll();
  engine.tap.reset();
}

TapEvent event(FuzzedDataProvider& input) {
  return {.type = input.ConsumeBool() ? EventType::keyDown : EventType::keyUp,
          .keyCode = input.PickValueInArray(keys),
          .autorepeat = input.ConsumeIntegralInRange<int>(0, 4) == 0 ? 1 : 0,
          .flags = input.PickValueInArray(modifiers),
          .userData = input.ConsumeIntegralInRange<int>(0, 7) == 0 ? marker : 0};
}

/// What holds for every event, whatever came before it.
void feed(const TapEvent& event) {
  const auto running = engine.running;
  const auto held = engine.held;
  const auto key = static_cast<std::uint16_t>(event.keyCode);
  const bool heard = fake::tapIsListening();
  const bool down = event.type == EventType::keyDown;
  const bool swallowed = fake::feed(event) == TapVerdict::swallow;

  assertThat(!swallowed || heard, "nothing is swallowed without a tap");
  assertThat(!swallowed || event.userData != marker, "the program's own events pass");
  assertThat(!swallowed || key != escapeKey, "Escape passes");
  assertThat(!swallowed || !down || (event.flags & modifierFlags) == 0, "modified presses pass");
  assertThat(!swallowed || down || held.contains(key), "only a held key's release is swallowed");
  if (!swallowed && key != escapeKey) {
    assertThat(engine.running == running, "an event that passes starts and stops nothing");
  }
  if (!down && event.userData != marker && heard) {
    assertThat(!engine.held.contains(key), "a released key is held no more");
  }
}

void checkEscape() {
  fake::feed({.type = EventType::keyDown, .keyCode = escapeKey});
  const bool listening = fake::tapIsListening();
  assertThat(!listening || (!engine.running[0] && !engine.running[1]), "Escape stops both macros");
}

void leaveSession() {
  fake::sendSessionDidResignActive();
  engine.stopAll();  // as the window does
}

/// Something happens around the program or in its window.
void happen(FuzzedDataProvider& input) {
  const bool yes = input.ConsumeBool();
  switch (input.ConsumeIntegralInRange<int>(0, 9)) {
    case 0:
      return fake::setApplicationActive(yes);
    case 1:
      return yes ? fake::setSessionActive(true) : leaveSession();
    case 2:
      return fake::invalidateTap();
    case 3:
      fake::disableTap(yes ? EventType::tapDisabledByTimeout : EventType::tapDisabledByUserInput);
      return;
    case 4:
      fake::system().trusted = yes;
      return;
    case 5:
      fake::system().refusesTaps = yes;
      return;
    case 6:
      fake::system().keysOfOthers.clear();
      if (yes) fake::system().keysOfOthers.insert(input.PickValueInArray(shortcuts));
      return;
    case 7:
      return permissionWatchTick([] { connectKeyboardListener(); }, [] {});
    case 8:
      engine.enabled[input.ConsumeIntegralInRange<int>(0, 1)] = yes;
      return;
    default:
      engine.keys = {input.PickValueInArray(shortcuts), input.PickValueInArray(shortcuts)};
  }
}

void play(FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange<int>(0, 7)) {
    case 0:
    case 1:
      happen(input);
      return updateClaimedKeys();  // as the window does
    case 2:
      return fake::advance(0.001 * input.ConsumeIntegralInRange<int>(0, 200));
    case 3:
      return checkEscape();
    default:
      return feed(event(input));
  }
}

/// Every press that was posted was released, in turn.
void checkPosts() {
  bool down = false;
  for (const auto& posted : fake::system().posted) {
    const bool press = posted.type == EventType::keyDown || posted.type == EventType::leftMouseDown;
    assertThat(press != down, "presses and releases take turns");
    down = press;
  }
  assertThat(!down, "nothing is left down");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  startProgram();
  while (input.remaining_bytes() > 0) play(input);
  checkPosts();
  endProgram();
  fake::system().posted.clear();
  fake::advance(10);
  assertThat(fake::system().posted.empty(), "nothing follows the end");
  return 0;
}
