#include "platform/linux/input/x11/connection.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>

#include <cstdlib>

#include "platform/fatal_error.h"

namespace vorrin::x11 {

namespace {

// Xlib has one handler of each kind for the whole process, and its own ones end it. These leave all
// connections but ours to whoever handled them before.
constinit Display* ownDisplay = nullptr;
constinit XErrorHandler formerErrorHandler = nullptr;
constinit XIOErrorHandler formerLossHandler = nullptr;

int dropOwnErrors(Display* display, XErrorEvent* error) {
  return display == ownDisplay ? 0 : formerErrorHandler(display, error);
}

int bearOwnLoss(Display* display) {
  return display == ownDisplay ? 0 : formerLossHandler(display);
}

void takeErrorsOf(Display* display) {
  precondition(ownDisplay == nullptr, "a process has one connection of this kind");
  ownDisplay = display;
  const XErrorHandler formerError = XSetErrorHandler(dropOwnErrors);
  if (formerError != dropOwnErrors) formerErrorHandler = formerError;
  const XIOErrorHandler formerLoss = XSetIOErrorHandler(bearOwnLoss);
  if (formerLoss != bearOwnLoss) formerLossHandler = formerLoss;
}

}  // namespace

std::unique_ptr<Connection> Connection::open() {
  if (std::getenv("DISPLAY") == nullptr) return nullptr;
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return nullptr;
  std::unique_ptr<Connection> connection(new Connection(display));
  if (!connection->findExtensions() || connection->lost()) return nullptr;
  return connection;
}

Connection::Connection(Display* display) : display_(display) {
  takeErrorsOf(display_);
  XSetIOErrorExitHandler(
      display_,
      [](Display*, void* self) {
        auto* const connection = static_cast<Connection*>(self);
        if (connection->lost_) return;
        connection->lost_ = true;
        if (connection->onLoss_) connection->onLoss_();
      },
      this);
  window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 1, 1, 0, 0, 0);
  XSelectInput(display_, window_, PropertyChangeMask);
}

Connection::~Connection() {
  // Closing talks to the server, so a lost connection is left to the end of the process.
  if (!lost_) XCloseDisplay(display_);
  ownDisplay = nullptr;
}

bool Connection::findExtensions() {
  int firstEvent = 0;
  int firstError = 0;
  if (XQueryExtension(display_, "XInputExtension", &inputOpcode_, &firstEvent, &firstError) == 0) {
    return false;
  }
  int major = 2;
  int minor = 2;
  if (XIQueryVersion(display_, &major, &minor) != Success) return false;
  if (major < 2 || (major == 2 && minor < 2)) return false;

  int opcode = 0;
  int xkbMajor = XkbMajorVersion;
  int xkbMinor = XkbMinorVersion;
  if (XkbQueryExtension(display_, &opcode, &xkbEventBase_, &firstError, &xkbMajor, &xkbMinor) ==
      0) {
    return false;
  }
  int testMajor = 0;
  int testMinor = 0;
  return XTestQueryExtension(display_, &firstEvent, &firstError, &testMajor, &testMinor) != 0;
}

std::uint32_t Connection::serverTime() const {
  // Every change of a property is announced with the time it was made, even of one of no length.
  const unsigned char nothing = 0;
  XChangeProperty(display_, window_, XA_WM_NAME, XA_STRING, 8, PropModeAppend, &nothing, 0);
  XSync(display_, False);
  std::uint32_t time = 0;
  XEvent event;
  while (!lost_ && XCheckTypedWindowEvent(display_, window_, PropertyNotify, &event) != 0) {
    time = static_cast<std::uint32_t>(event.xproperty.time);
  }
  return time;
}

}  // namespace vorrin::x11
