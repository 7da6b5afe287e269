#pragma once

#include "settings/preset.h"

namespace vorrin::test {

inline Preset startPreset() {
  return {{0.05, 0.001}, {50, 48}, 1, {true, true}};
}

/// A valid preset with nothing in common with `startPreset`.
inline Preset otherPreset() {
  return {{0.12, 0.003}, {97, 98}, 4, {false, false}};
}

}  // namespace vorrin::test
