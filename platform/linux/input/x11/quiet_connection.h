#pragma once

#include <xcb/xcb.h>

#include <memory>

namespace vorrin::x11 {

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// A connection to the X server over which it sends answers alone.
///
/// By default the server tells each client of every change of the keyboard map, which comes with
/// each change between two keyboards, and keeps for it what it does not read.
using QuietConnection = std::unique_ptr<xcb_connection_t, Disconnect>;

/// Connects to the server that DISPLAY names, and puts the number of its screen in `screen`.
/// Nothing comes back without one, or when it lacks XKB.
QuietConnection openQuietConnection(int& screen);

}  // namespace vorrin::x11
