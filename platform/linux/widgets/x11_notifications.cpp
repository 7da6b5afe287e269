#include "platform/linux/widgets/x11_notifications.h"

#include <QGuiApplication>

// After Qt's header, for its macros take common words.
#include <X11/XKBlib.h>

namespace vorrin {

void leaveOutPointerButtons() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr) return;
  XkbSelectEventDetails(x11->display(), XkbUseCoreKbd, XkbStateNotify, XkbPointerButtonMask, 0);
  XFlush(x11->display());
}

}  // namespace vorrin
