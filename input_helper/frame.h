#pragma once

#include <linux/input-event-codes.h>

#include <bitset>
#include <cstdint>
#include <span>
#include <vector>

namespace vorrin::input_helper {

using KeySet = std::bitset<KEY_CNT>;

/// One event as the kernel tells it, without its time. A frame is what lies between two
/// SYN_REPORTs; those are left out and added again at writing.
struct InputEvent {
  std::uint16_t type = 0;
  std::uint16_t code = 0;
  std::int32_t value = 0;
  bool operator==(const InputEvent&) const = default;
};
using Frame = std::vector<InputEvent>;

/// The values of a key's event. Everything else is a repeat.
enum KeyValue : std::int32_t { released = 0, pressed = 1 };

/// Whether it is a key or a button that a `KeySet` has a place for.
bool isKey(const InputEvent& event);

/// Whether a clone passes it on. Not what travels towards the keyboard (LEDs, sounds, repeat
/// rates), nor scan codes, which the kernel would hand back to this program.
bool goesOn(const InputEvent& event);

/// Has `keys` follow the presses and releases of `frame`.
void followKeys(std::span<const InputEvent> frame, KeySet& keys);

/// The releases of all `keys`.
Frame releasesOf(const KeySet& keys);

/// Whether the keys are down that, pressed together, end the helper.
bool holdsPanicChord(const KeySet& keys);

}  // namespace vorrin::input_helper
