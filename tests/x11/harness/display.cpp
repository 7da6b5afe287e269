#include "tests/x11/harness/display.h"

#include <stdexcept>

namespace vorrin::x11_tests {

DisplayPointer openDisplay(const std::string& name) {
  DisplayPointer display(XOpenDisplay(name.c_str()));
  if (!display) throw std::runtime_error("cannot connect to the X server " + name);
  // Tests that kill the server go on afterwards, where Xlib would end the process.
  XSetIOErrorHandler([](Display*) { return 0; });
  XSetIOErrorExitHandler(
      display.get(), [](Display*, void*) {}, nullptr);
  return display;
}

}  // namespace vorrin::x11_tests
