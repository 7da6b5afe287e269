#pragma once

#include <xcb/xcb.h>

class QRect;

namespace vorrin {

enum class CoveredScreens { none, some, all };

/// Which of the user's screens are covered as lockers do it, each by one window or more that no
/// window manager knows. Asks the X server about every window.
CoveredScreens coveredScreens(xcb_connection_t* connection, xcb_window_t root);

/// Whether a window at this place, in pixels, lies over a whole screen. Asks nobody.
bool coversAScreen(const QRect& place);

}  // namespace vorrin
