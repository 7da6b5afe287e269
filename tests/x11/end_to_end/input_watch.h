#pragma once

#include <string>

#include "tests/x11/harness/display.h"

namespace vorrin::x11_tests {

/// Counts everything that is pressed on any keyboard or pointing device of a server, by a user or
/// by a program, whatever window gets it.
class InputWatch {
 public:
  explicit InputWatch(const std::string& display);

  /// The keys and buttons pressed since the last call.
  int takePresses();

 private:
  DisplayPointer display_;
};

}  // namespace vorrin::x11_tests
