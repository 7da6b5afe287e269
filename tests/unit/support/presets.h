#pragma once

#include "settings/choices.h"
#include "settings/preset.h"
#include "support/random.h"

namespace vorrin::test {

inline Preset startPreset() {
  return {{0.05, 0.001}, {50, 48}, 1, {true, true}};
}

/// A valid preset with nothing in common with `startPreset`.
inline Preset otherPreset() {
  return {{0.12, 0.003}, {97, 98}, 4, {false, false}};
}

inline Preset randomValidPreset(Random& random) {
  const auto interval = [&] {
    return random.chance(0.5) ? random.real(0.001, 3600) : random.between(1, 3600) / 1.0;
  };
  const std::size_t first = random.between<std::size_t>(0, choices.size() - 1);
  const std::size_t step = random.between<std::size_t>(1, choices.size() - 1);
  return {{interval(), interval()},
          {choices[first].keyCode, choices[(first + step) % choices.size()].keyCode},
          random.between(0, 9),
          {random.chance(0.5), random.chance(0.5)}};
}

}  // namespace vorrin::test
