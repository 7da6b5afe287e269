// A program that locks the screen as the plain lockers of X11 do, and tells nobody: it takes the
// keyboard and the pointer and covers the screen. A line on its standard output for each key and
// button: kind, code. By an argument it is another:
//   grabs-first  takes the keyboard and the pointer before it covers the screen
//   again        covers the screen, leaves it, and covers it again
//   dialog       shows a small window of the ordinary kind too
//   keyboard     no locker: takes nothing but the keyboard
//   cover        no locker: only covers the screen
//   game         an old game that fills the screen: its ordinary window is as large, and below
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

struct Size {
  unsigned width = 1;
  unsigned height = 1;
};

/// Shows or hides a window, and returns when the server or the window manager has done so.
void setShown(Display* display, Window window, bool shown) {
  shown ? XMapRaised(display, window) : XUnmapWindow(display, window);
  XEvent seen;
  do {
    XWindowEvent(display, window, StructureNotifyMask, &seen);
  } while (seen.type != (shown ? MapNotify : UnmapNotify));
}

/// Shows a window of a fixed size as programs do.
void showOrdinaryWindow(Display* display, Size size) {
  const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, size.width,
                                            size.height, 0, 0, 0);
  XSizeHints hints{};
  hints.flags = PMinSize | PMaxSize;
  hints.min_width = hints.max_width = static_cast<int>(size.width);
  hints.min_height = hints.max_height = static_cast<int>(size.height);
  XSetWMNormalHints(display, window, &hints);
  XSelectInput(display, window, StructureNotifyMask);
  setShown(display, window, true);
}

Window makeCover(Display* display, Size size) {
  XSetWindowAttributes attributes{};
  attributes.override_redirect = True;
  attributes.event_mask = KeyPressMask | ButtonPressMask | StructureNotifyMask;
  return XCreateWindow(display, DefaultRootWindow(display), 0, 0, size.width, size.height, 0,
                       CopyFromParent, InputOutput, static_cast<Visual*>(CopyFromParent),
                       CWOverrideRedirect | CWEventMask, &attributes);
}

/// A key or a button that is just being pressed may have the device for a moment.
void take(Display* display, Window window, bool pointerToo) {
  while ((pointerToo && XGrabPointer(display, window, False, ButtonPressMask, GrabModeAsync,
                                     GrabModeAsync, None, None, CurrentTime) != GrabSuccess) ||
         XGrabKeyboard(display, window, False, GrabModeAsync, GrabModeAsync, CurrentTime) !=
             GrabSuccess) {
    poll(nullptr, 0, 10);
  }
}

/// Becomes the program of this kind.
void become(std::string_view kind, Display* display) {
  const Screen* const screen = DefaultScreenOfDisplay(display);
  const Size all{static_cast<unsigned>(screen->width), static_cast<unsigned>(screen->height)};
  if (kind == "dialog") showOrdinaryWindow(display, {300, 200});
  if (kind == "game") showOrdinaryWindow(display, all);
  const Window window = makeCover(display, kind == "keyboard" ? Size() : all);
  if (kind == "grabs-first") take(display, DefaultRootWindow(display), true);
  setShown(display, window, true);
  if (kind == "again") {
    for (const bool shown : {false, true}) setShown(display, window, shown);
  }
  if (kind != "cover" && kind != "grabs-first") take(display, window, kind != "keyboard");
}

}  // namespace

int main(int count, char** arguments) {
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return EXIT_FAILURE;
  become(count > 1 ? arguments[1] : "plain", display);
  std::puts("locked 0");
  while (true) {
    if (XPending(display) == 0) std::fflush(stdout);
    XEvent event;
    XNextEvent(display, &event);
    if (event.type == KeyPress) std::printf("KeyPress %u\n", event.xkey.keycode);
    if (event.type == ButtonPress) std::printf("ButtonPress %u\n", event.xbutton.button);
  }
}
