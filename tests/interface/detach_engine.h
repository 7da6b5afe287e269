#pragma once

#include "bridge/program_engine.h"

namespace vorrin::test {

/// Stops the program's engine and takes away what a test gave it; its settings stay.
inline void detachEngine() {
  engine.changed = nullptr;
  engine.emit = [](int) {};
  engine.permitted = [] { return true; };
  engine.stopAll();
  engine.tap.reset();
  engine.held.clear();
}

}  // namespace vorrin::test
