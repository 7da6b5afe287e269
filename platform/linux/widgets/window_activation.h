#pragma once

class QWidget;

namespace vorrin {

/// Brings a window to the front, with the keyboard, because the user asked for it: also from
/// another desktop, and against a window manager's guard over the window in use.
void bringToFront(QWidget& window);

}  // namespace vorrin
