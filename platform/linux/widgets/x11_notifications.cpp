#include "platform/linux/widgets/x11_notifications.h"

#include <QGuiApplication>

// After Qt's header, for its macros take common words.
#include <X11/XKBlib.h>

namespace vorrin {

void leaveOutPointerButtons() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // The toolkit's offscreen mode passes for X11 too, without a display.
  Display* const display = x11 != nullptr ? x11->display() : nullptr;
  if (display == nullptr) return;
  XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, XkbPointerButtonMask, 0);
  XFlush(display);
}

}  // namespace vorrin
