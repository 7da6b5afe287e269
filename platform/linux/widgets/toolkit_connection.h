#pragma once

#include <xcb/xcb.h>

namespace vorrin {

/// The toolkit's own connection to the X server; null on other systems of windows.
xcb_connection_t* toolkitConnection();

/// The root window of the first screen, the only one of every current server.
xcb_window_t rootWindow(xcb_connection_t* connection);

/// Has the server tell the toolkit's connection, where there is one, only what concerns this
/// program.
///
/// Every click made anywhere, a macro's included, wakes it several times: the pointer's buttons
/// count as keyboard state, of which the toolkit reads only modifiers and layouts, and window
/// managers (openbox) write the order of the windows into a property of the root window, of which
/// it reads the room that panels leave. That room is then only known as it was at the start.
///
/// A keyboard map is announced each time another keyboard is typed on, and a macro's keys come from
/// one of their own: whoever types beside it has a map announced with every key. The toolkit then
/// reads the whole map, name by name, on the main thread. That takes milliseconds in which no timer
/// fires, for text that nobody types into this program meanwhile. So it reads the map when the
/// program comes to the front, and is told of changes only while it is there.
void leaveOutNewsOfOthers();

}  // namespace vorrin
