#pragma once

// For sources that include neither Qt's headers nor the test framework's after this one.
#include <X11/Xlib.h>

#include <memory>
#include <string>

namespace vorrin::x11_tests {

struct DisplayClose {
  void operator()(Display* display) const { XCloseDisplay(display); }
};
using DisplayPointer = std::unique_ptr<Display, DisplayClose>;

/// Connects to an X server; throws std::runtime_error when there is none.
DisplayPointer openDisplay(const std::string& name);

}  // namespace vorrin::x11_tests
