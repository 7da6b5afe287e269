#include "platform/linux/session/focus_watch.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin {

namespace {

/// Whether a program that is neither this one nor the window manager has the keyboard.
bool isFocusOfOthers(xcb_connection_t* connection, xcb_window_t own) {
  const auto reply =
      ownReply(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  if (!reply || reply->focus == XCB_NONE || reply->focus == XCB_INPUT_FOCUS_POINTER_ROOT ||
      reply->focus == root || areOfOneClient(connection, reply->focus, own)) {
    return false;
  }
  const auto managers = xcbProperty(connection, root, "_NET_SUPPORTING_WM_CHECK");
  return std::none_of(managers.begin(), managers.end(), [&](xcb_window_t manager) {
    return areOfOneClient(connection, reply->focus, manager);
  });
}

/// The server tells of the keyboard coming and going with the pointer alone in its own terms.
bool isAboutPointer(const xcb_focus_in_event_t& event) {
  return event.detail == XCB_NOTIFY_DETAIL_POINTER ||
         event.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT;
}

}  // namespace

FocusWatch::FocusWatch(std::function<void()> changed)
    : QObject(qGuiApp), changed_(std::move(changed)) {
  qGuiApp->installNativeEventFilter(this);
}

bool FocusWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
  if (eventType != "xcb_generic_event_t") return false;
  const auto type =
      static_cast<const xcb_generic_event_t*>(message)->response_type & ~std::uint8_t{0x80};
  if (type != XCB_FOCUS_IN && type != XCB_FOCUS_OUT) return false;
  const auto& event = *static_cast<const xcb_focus_in_event_t*>(message);
  if (isAboutPointer(event)) return false;
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  setFocusElsewhere(type == XCB_FOCUS_OUT && isFocusOfOthers(x11->connection(), event.event));
  return false;
}

void FocusWatch::setFocusElsewhere(bool isElsewhere) {
  if (std::exchange(isFocusElsewhere_, isElsewhere) == isElsewhere) return;
  // The library has not taken up the event yet.
  QTimer::singleShot(0, this, [this] { changed_(); });
}

}  // namespace vorrin
