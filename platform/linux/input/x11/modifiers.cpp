#include "platform/linux/input/x11/modifiers.h"

#include "platform/event_tap.h"

namespace vorrin::x11 {

namespace {

constexpr unsigned shiftBit = 1;
constexpr unsigned lockBit = 2;
constexpr unsigned controlBit = 4;

}  // namespace

std::uint64_t eventFlags(unsigned modifiers, const ModifierMasks& masks) {
  std::uint64_t flags = 0;
  if ((modifiers & lockBit) != 0) flags |= event_flags::maskAlphaShift;
  if ((modifiers & shiftBit) != 0) flags |= event_flags::maskShift;
  if ((modifiers & controlBit) != 0) flags |= event_flags::maskControl;
  if ((modifiers & masks.alternate) != 0) flags |= event_flags::maskAlternate;
  if ((modifiers & masks.command) != 0) flags |= event_flags::maskCommand;
  return flags;
}

std::vector<unsigned> lockStates(const ModifierMasks& masks) {
  const unsigned held = shiftBit | controlBit | masks.alternate | masks.command;
  const unsigned locks = (lockBit | masks.numLock | masks.scrollLock) & ~held;
  std::vector<unsigned> states;
  // Counts down through the subsets of `locks`, which are its bits after a borrow masked out.
  for (unsigned subset = locks; subset != 0; subset = (subset - 1) & locks) {
    states.push_back(subset);
  }
  states.push_back(0);
  return states;
}

}  // namespace vorrin::x11
