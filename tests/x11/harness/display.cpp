#include "tests/x11/harness/display.h"

#include <stdexcept>

namespace vorrin::x11_tests {

DisplayPointer openDisplay(const std::string& name) {
  DisplayPointer display(XOpenDisplay(name.c_str()));
  if (!display) throw std::runtime_error("cannot connect to the X server " + name);
  return display;
}

}  // namespace vorrin::x11_tests
