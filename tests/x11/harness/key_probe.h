#pragma once

#include <cstdint>
#include <string>

#include "tests/x11/harness/display.h"

namespace vorrin::x11_tests {

/// Finds out whether some program holds a key of the server's keyboard back from all others. For
/// Vorrin that is the sign that it would take up a shortcut: not before it listens, and not while
/// its own window is in front, which it learns a moment after the window manager.
class KeyProbe {
 public:
  explicit KeyProbe(const std::string& display);

  /// Takes the key for an instant in which the server serves nobody else.
  bool isHeld(std::uint16_t virtualKey);

  /// False when that is not so in time.
  bool waitUntilHeld(std::uint16_t virtualKey);
  bool waitUntilFree(std::uint16_t virtualKey);

 private:
  DisplayPointer display_;
  int keyboard_;
};

}  // namespace vorrin::x11_tests
