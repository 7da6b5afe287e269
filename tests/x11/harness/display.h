#pragma once

#include <memory>
#include <string>

/// Xlib's Display. Its header defines macros that fit neither Qt's headers nor the test
/// framework's.
struct _XDisplay;  // NOLINT(bugprone-reserved-identifier)

namespace vorrin::x11_tests {

struct DisplayClose {
  void operator()(_XDisplay* display) const;
};
using DisplayPointer = std::unique_ptr<_XDisplay, DisplayClose>;

/// Connects to an X server, for XInput 2.2; throws std::runtime_error when there is none. Neither
/// an error nor the loss of the server ends the process, as Xlib would have it: other programs'
/// windows may go at any time, and tests kill servers.
DisplayPointer openDisplay(const std::string& name);

/// The number of the input device with this name; throws std::runtime_error when there is none.
int deviceNamed(_XDisplay* display, const std::string& name);

/// Whether the server refused a request of this process since the last call.
bool takeError(_XDisplay* display);

}  // namespace vorrin::x11_tests
