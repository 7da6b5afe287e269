#include "tests/x11/harness/display.h"

#include <stdexcept>
#include <utility>

namespace vorrin::x11_tests {

namespace {

bool errorSeen = false;

int noteError(Display*, XErrorEvent*) {
  errorSeen = true;
  return 0;
}

}  // namespace

DisplayPointer openDisplay(const std::string& name) {
  DisplayPointer display(XOpenDisplay(name.c_str()));
  if (!display) throw std::runtime_error("cannot connect to the X server " + name);
  XSetErrorHandler(noteError);
  XSetIOErrorHandler([](Display*) { return 0; });
  XSetIOErrorExitHandler(
      display.get(), [](Display*, void*) {}, nullptr);
  return display;
}

bool takeError(Display* display) {
  XSync(display, False);
  return std::exchange(errorSeen, false);
}

}  // namespace vorrin::x11_tests
