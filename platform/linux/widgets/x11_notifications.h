#pragma once

namespace vorrin {

/// Has the X server tell the toolkit's connection less: by default it is woken twice for every
/// click made anywhere, its own macro's included, since the state of the pointer's buttons counts
/// as keyboard state. The toolkit reads only modifiers and layouts from it. Does nothing on other
/// systems of windows.
void leaveOutPointerButtons();

}  // namespace vorrin
