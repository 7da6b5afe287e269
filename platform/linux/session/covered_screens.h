#pragma once

#include <xcb/xcb.h>

class QRect;

namespace vorrin {

/// Whether every screen of the user's is covered as lockers do it, by one window or more that no
/// window manager knows. Asks the X server about every window.
bool areScreensCovered(xcb_connection_t* connection, xcb_window_t root);

/// Whether a window at this place, in pixels, lies over a whole screen. Asks nobody.
bool coversAScreen(const QRect& place);

}  // namespace vorrin
