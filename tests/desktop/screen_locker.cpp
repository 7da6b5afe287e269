// A program that locks the screen as the plain lockers of X11 do, and tells nobody: it takes the
// keyboard and the pointer and, unless an argument is given, covers the screen. A line on its
// standard output for each key: kind, code.
#include <X11/Xlib.h>
#include <poll.h>

#include <cstdio>
#include <cstdlib>

namespace {

Window cover(Display* display, bool wholeScreen) {
  const int screen = DefaultScreen(display);
  XSetWindowAttributes attributes{};
  attributes.override_redirect = True;
  attributes.event_mask = KeyPressMask | VisibilityChangeMask;
  const auto width = wholeScreen ? static_cast<unsigned>(DisplayWidth(display, screen)) : 1;
  const auto height = wholeScreen ? static_cast<unsigned>(DisplayHeight(display, screen)) : 1;
  const Window window = XCreateWindow(
      display, DefaultRootWindow(display), 0, 0, width, height, 0, CopyFromParent, InputOutput,
      static_cast<Visual*>(CopyFromParent), CWOverrideRedirect | CWEventMask, &attributes);
  XMapRaised(display, window);
  XEvent seen;
  XWindowEvent(display, window, VisibilityChangeMask, &seen);
  return window;
}

/// A key or a button that is just being pressed may have the device for a moment.
bool takeInput(Display* display, Window window, bool pointerToo) {
  return (!pointerToo || XGrabPointer(display, window, False, ButtonPressMask, GrabModeAsync,
                                      GrabModeAsync, None, None, CurrentTime) == GrabSuccess) &&
         XGrabKeyboard(display, window, False, GrabModeAsync, GrabModeAsync, CurrentTime) ==
             GrabSuccess;
}

}  // namespace

int main(int count, char**) {
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return EXIT_FAILURE;
  const bool locksAll = count == 1;
  const Window window = cover(display, locksAll);
  while (!takeInput(display, window, locksAll)) poll(nullptr, 0, 10);
  std::puts("locked 0");
  while (true) {
    if (XPending(display) == 0) std::fflush(stdout);
    XEvent event;
    XNextEvent(display, &event);
    if (event.type == KeyPress) std::printf("KeyPress %u\n", event.xkey.keycode);
  }
}
