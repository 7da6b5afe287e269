#include "tests/x11/harness/windows.h"

#include <X11/Xlib.h>

#include <algorithm>

#include "tests/x11/harness/wait.h"

namespace vorrin::x11_tests {

// The bytes of a property. Xlib hands out 32-bit items as longs.
std::string Windows::property(unsigned long window, const char* name) const {
  const Atom atom = XInternAtom(display_.get(), name, False);
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  XGetWindowProperty(display_.get(), window, atom, 0, 4096, False, AnyPropertyType, &type, &format,
                     &count, &rest, &data);
  if (data == nullptr) return {};
  const std::size_t size = format == 32 ? sizeof(long) : static_cast<std::size_t>(format) / 8;
  std::string bytes(reinterpret_cast<const char*>(data), count * size);
  XFree(data);
  return bytes;
}

std::vector<unsigned long> Windows::windowsIn(const char* name) const {
  const std::string bytes = property(DefaultRootWindow(display_.get()), name);
  std::vector<unsigned long> windows(bytes.size() / sizeof(unsigned long));
  std::copy_n(bytes.data(), windows.size() * sizeof(unsigned long),
              reinterpret_cast<char*>(windows.data()));
  return windows;
}

void Windows::tellManager(unsigned long window, const char* message) const {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display_.get(), message, False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = 2;  // the request comes from a pager, so it is obeyed
  XSendEvent(display_.get(), DefaultRootWindow(display_.get()), False,
             SubstructureRedirectMask | SubstructureNotifyMask, &event);
  XSync(display_.get(), False);
}

std::optional<unsigned long> Windows::titled(const std::string& title) {
  for (const unsigned long window : all()) {
    const std::string name = property(window, "_NET_WM_NAME");
    if ((name.empty() ? property(window, "WM_NAME") : name) == title) return window;
  }
  return std::nullopt;
}

unsigned long Windows::active() {
  const std::vector<unsigned long> windows = windowsIn("_NET_ACTIVE_WINDOW");
  return windows.empty() ? 0 : windows.front();
}

bool Windows::activate(unsigned long window) {
  ask(window);
  return waitUntil([&] {
    Window focus = 0;
    int revert = 0;
    XGetInputFocus(display_.get(), &focus, &revert);
    return active() == window && focus != 0;
  });
}

void Windows::ask(unsigned long window) {
  tellManager(window, "_NET_ACTIVE_WINDOW");
}

unsigned Windows::widthOf(unsigned long window) {
  XWindowAttributes attributes{};
  XGetWindowAttributes(display_.get(), window, &attributes);
  return static_cast<unsigned>(attributes.width);
}

void Windows::close(unsigned long window) {
  tellManager(window, "_NET_CLOSE_WINDOW");
}

}  // namespace vorrin::x11_tests
