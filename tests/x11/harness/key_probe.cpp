#include "tests/x11/harness/key_probe.h"

#include <X11/extensions/XInput2.h>

#include <array>

#include "tests/x11/harness/user.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::x11_tests {

KeyProbe::KeyProbe(const std::string& display)
    : display_(openDisplay(display)), keyboard_(deviceNamed(display_.get(), serverKeyboard)) {}

bool KeyProbe::isHeld(std::uint16_t virtualKey) {
  Display* const display = display_.get();
  const int keycode = static_cast<int>(keycodeOf(virtualKey));
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XIEventMask mask{keyboard_, static_cast<int>(bits.size()), bits.data()};
  XIGrabModifiers modifiers{0, 0};
  XGrabServer(display);
  const int refused = XIGrabKeycode(display, keyboard_, keycode, DefaultRootWindow(display),
                                    XIGrabModeAsync, XIGrabModeAsync, False, &mask, 1, &modifiers);
  modifiers = {0, 0};
  if (refused == 0) {
    XIUngrabKeycode(display, keyboard_, keycode, DefaultRootWindow(display), 1, &modifiers);
  }
  XUngrabServer(display);
  XSync(display, False);
  return refused != 0;
}

bool KeyProbe::waitUntilHeld(std::uint16_t virtualKey) {
  return waitUntil([&] { return isHeld(virtualKey); });
}

bool KeyProbe::waitUntilFree(std::uint16_t virtualKey) {
  return waitUntil([&] { return !isHeld(virtualKey); });
}

}  // namespace vorrin::x11_tests
