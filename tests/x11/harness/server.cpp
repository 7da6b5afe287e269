#include "tests/x11/harness/server.h"

#include <X11/Xlib.h>

#include <stdexcept>

#include "tests/x11/harness/display.h"

namespace vorrin::x11_tests {

namespace {

bool isReparented(Display* display, Window window) {
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  if (XQueryTree(display, window, &root, &parent, &children, &count) == 0) return false;
  if (children != nullptr) XFree(children);
  return parent != root;
}

// A window manager that is still starting may lose a window shown meanwhile, even after it has
// announced itself. So it is tried out.
bool hasWindowManager(Display* display) {
  const Window window =
      XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 10, 10, 0, 0, 0);
  XMapWindow(display, window);
  const bool taken =
      waitUntil([&] { return isReparented(display, window); }, std::chrono::milliseconds(200));
  XDestroyWindow(display, window);
  XSync(display, False);
  return taken;
}

}  // namespace

Server::Server()
    // Without -noreset the server starts afresh when its last client leaves. It closes the
    // descriptor of the display number and may use it again for a client, so that must not be its
    // standard output, which it prints on.
    : process_(std::make_unique<Process>(
          std::vector<std::string>{"sh", "-c",
                                   "exec Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 "
                                   "1280x1024x24 3>&1 >/dev/null"})) {
  const std::optional<std::string> number = process_->readLine();
  if (!number) throw std::runtime_error("no X server");
  display_ = ":" + *number;
}

Desktop::Desktop() {
  startWindowManager();
}

Desktop& Desktop::shared() {
  static Desktop desktop;
  return desktop;
}

void Desktop::startWindowManager() {
  windowManager_ = std::make_unique<Process>(
      std::vector<std::string>{"openbox", "--sm-disable"},
      Environment{{"DISPLAY", server_.display()}, {"XDG_CONFIG_HOME", "/nonexistent"}});
  const DisplayPointer display = openDisplay(server_.display());
  if (!waitUntil([&] { return hasWindowManager(display.get()); })) {
    throw std::runtime_error("no window manager");
  }
}

void Desktop::killWindowManager() {
  windowManager_.reset();
}

}  // namespace vorrin::x11_tests
