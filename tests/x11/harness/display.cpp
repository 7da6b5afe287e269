#include "tests/x11/harness/display.h"

#include <X11/extensions/XInput2.h>

#include <span>
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

void DisplayClose::operator()(_XDisplay* display) const {
  XCloseDisplay(display);
}

DisplayPointer openDisplay(const std::string& name) {
  DisplayPointer display(XOpenDisplay(name.c_str()));
  if (!display) throw std::runtime_error("cannot connect to the X server " + name);
  XSetErrorHandler(noteError);
  XSetIOErrorHandler([](Display*) { return 0; });
  XSetIOErrorExitHandler(
      display.get(), [](Display*, void*) {}, nullptr);
  int major = 2;
  int minor = 2;
  XIQueryVersion(display.get(), &major, &minor);
  return display;
}

int deviceNamed(Display* display, const std::string& name) {
  int count = 0;
  XIDeviceInfo* const devices = XIQueryDevice(display, XIAllDevices, &count);
  int found = 0;
  for (const XIDeviceInfo& device : std::span(devices, static_cast<std::size_t>(count))) {
    if (device.name == name) found = device.deviceid;
  }
  XIFreeDeviceInfo(devices);
  if (found == 0) throw std::runtime_error("no device " + name);
  return found;
}

bool takeError(Display* display) {
  XSync(display, False);
  return std::exchange(errorSeen, false);
}

}  // namespace vorrin::x11_tests
