// A program of somebody else's: shows a window and tells on its standard output what it receives, a
// line each: kind, detail, state, arrival (ns of the monotonic clock).
#include <X11/XKBlib.h>
#include <X11/Xlib.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

long long now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

void tell(const char* kind, unsigned detail, unsigned state = 0) {
  std::printf("%s %u %u %lld\n", kind, detail, state, now());
}

void tell(const XEvent& event) {
  switch (event.type) {
    case KeyPress:
      return tell("KeyPress", event.xkey.keycode, event.xkey.state);
    case KeyRelease:
      return tell("KeyRelease", event.xkey.keycode, event.xkey.state);
    case ButtonPress:
      return tell("ButtonPress", event.xbutton.button, event.xbutton.state);
    case ButtonRelease:
      return tell("ButtonRelease", event.xbutton.button, event.xbutton.state);
    case FocusIn:
      return tell("FocusIn", static_cast<unsigned>(event.xfocus.mode));
    case FocusOut:
      return tell("FocusOut", static_cast<unsigned>(event.xfocus.mode));
    case MapNotify:
      std::printf("window %lu\n", event.xmap.window);
      return;
    default:
      return;
  }
}

}  // namespace

int main(int count, char** arguments) {
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return EXIT_FAILURE;
  // So that a held key shows as presses only, and a release is always the user's.
  XkbSetDetectableAutoRepeat(display, True, nullptr);
  const Window window =
      XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 400, 300, 0, 0, 0);
  XStoreName(display, window, count > 1 ? arguments[1] : "client");
  XSelectInput(display, window,
               KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask |
                   FocusChangeMask | StructureNotifyMask);
  XMapWindow(display, window);
  while (true) {
    // What came together is written together, or thousands of events a second would be late.
    if (XPending(display) == 0) std::fflush(stdout);
    XEvent event;
    XNextEvent(display, &event);
    tell(event);
  }
}
