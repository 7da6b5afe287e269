#include "platform/linux/widgets/x11_notifications.h"

#include <QGuiApplication>

// After Qt's header, for its macros take common words.
#include <X11/XKBlib.h>

namespace vorrin {

void leaveOutNewsOfClicks() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // The toolkit's offscreen mode passes for X11 too, without a display.
  Display* const display = x11 != nullptr ? x11->display() : nullptr;
  if (display == nullptr) return;
  XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, XkbPointerButtonMask, 0);
  const Window root = DefaultRootWindow(display);
  XWindowAttributes attributes;
  if (XGetWindowAttributes(display, root, &attributes) != 0) {
    XSelectInput(display, root, attributes.your_event_mask & ~PropertyChangeMask);
  }
  XFlush(display);
}

}  // namespace vorrin
