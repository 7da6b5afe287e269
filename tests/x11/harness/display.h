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

/// Connects to an X server, for XInput 2.2; throws std::runtime_error when there is none. Neither
/// an error nor the loss of the server ends the process, as Xlib would have it: other programs'
/// windows may go at any time, and tests kill servers.
DisplayPointer openDisplay(const std::string& name);

/// The number of the input device with this name; throws std::runtime_error when there is none.
int deviceNamed(Display* display, const std::string& name);

/// Whether the server refused a request of this process since the last call.
bool takeError(Display* display);

}  // namespace vorrin::x11_tests
