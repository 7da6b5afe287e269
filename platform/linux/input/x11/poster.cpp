#include "platform/linux/input/x11/poster.h"

#include <X11/extensions/XTest.h>

namespace vorrin::x11 {

namespace {

// With a delay the server would hold up all other requests of this connection.
constexpr unsigned long atOnce = 0;

}  // namespace

Poster::~Poster() {
  if (connection_.lost()) return;
  // The server keeps XTEST's keys down when the client that pressed them is gone.
  for (unsigned code = 0; code < keysDown_.size(); ++code) {
    if (keysDown_[code]) XTestFakeKeyEvent(connection_.display(), code, False, atOnce);
  }
  XFlush(connection_.display());
}

void Poster::key(KeyCode keycode, bool down, Post post) {
  if (connection_.lost()) return;
  XTestFakeKeyEvent(connection_.display(), keycode, down ? True : False, atOnce);
  // Asked for afterwards because the first call of all sends a request before its own.
  ledger_.add(NextRequest(connection_.display()) - 1, keycode, down, post);
  keysDown_[keycode] = down;
}

void Poster::flush() {
  if (!connection_.lost()) XFlush(connection_.display());
}

}  // namespace vorrin::x11
