#include "input_watch.h"

#include <X11/extensions/XInput2.h>

#include <array>

namespace vorrin::x11_tests {

InputWatch::InputWatch(const std::string& display) : display_(openDisplay(display)) {
  Display* const connection = display_.get();
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_RawKeyPress);
  XISetMask(bits.data(), XI_RawButtonPress);
  // Of the slaves as well: their events come at once, where those of the masters wait while a
  // window manager has frozen them.
  XIEventMask mask{XIAllDevices, static_cast<int>(bits.size()), bits.data()};
  XISelectEvents(connection, DefaultRootWindow(connection), &mask, 1);
  XSync(connection, False);
}

int InputWatch::takePresses() {
  Display* const display = display_.get();
  XSync(display, False);
  int presses = 0;
  while (XPending(display) > 0) {
    XEvent event;
    XNextEvent(display, &event);
    if (event.type != GenericEvent || XGetEventData(display, &event.xcookie) == 0) continue;
    const auto* const raw = static_cast<const XIRawEvent*>(event.xcookie.data);
    if (raw->deviceid == raw->sourceid) ++presses;
    XFreeEventData(display, &event.xcookie);
  }
  return presses;
}

}  // namespace vorrin::x11_tests
