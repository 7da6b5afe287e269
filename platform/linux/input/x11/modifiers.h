#pragma once

#include <cstdint>
#include <vector>

namespace vorrin::x11 {

/// Which bit of the X modifier state stands for which modifier key. Shift (1), Lock (2) and Control
/// (4) are fixed by the protocol, the other five bits are the keymap's to give out; 0 means that no
/// key has the meaning.
struct ModifierMasks {
  unsigned alternate = 0;  ///< Alt, Meta and the third-level chooser (AltGr)
  unsigned command = 0;    ///< Super
  unsigned numLock = 0;
  unsigned scrollLock = 0;
};

/// The bits of `event_flags` that the modifier state `modifiers` amounts to. Caps Lock shows as
/// `maskAlphaShift`; Num Lock and Scroll Lock have no flag.
std::uint64_t eventFlags(unsigned modifiers, const ModifierMasks& masks);

/// Every modifier state in which none but lock keys are on: the states in which a shortcut counts
/// as pressed alone.
std::vector<unsigned> lockStates(const ModifierMasks& masks);

}  // namespace vorrin::x11
