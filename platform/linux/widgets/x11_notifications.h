#pragma once

namespace vorrin {

/// Has the X server tell the toolkit's connection less. By default every click made anywhere, a
/// macro's included, wakes it several times: the pointer's buttons count as keyboard state, of
/// which the toolkit reads only modifiers and layouts, and window managers (openbox) write the
/// order of the windows into a property of the root window, of which it reads the room that panels
/// leave. That room is then only known as it was at the start. Does nothing on other systems of
/// windows.
void leaveOutNewsOfClicks();

}  // namespace vorrin
