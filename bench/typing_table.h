#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/table.h"

namespace vorrin::bench {

/// What became of a text that was typed.
struct Typed {
  std::vector<double> latencies;  ///< milliseconds from a key's press to its arrival
  std::size_t lost = 0;           ///< keys that did not arrive
  std::size_t wrong = 0;          ///< places where what was received is not what was typed
};

/// How many keys are typed at each rate, and at which rates, in keys per second.
inline constexpr int typedKeys = 440;
inline constexpr double typingRates[] = {20, 50, 100};
/// A shortcut is pressed before each key of this many, and held over it.
inline constexpr int shortcutEvery = 11;

/// The heading of a table of such rows.
Row typingHeading();

/// What `who` did to the typing, beside what `reference` did.
Row typingRow(double perSecond, const std::string& who, const Typed& typed, const Typed& reference);

}  // namespace vorrin::bench
