#include "platform/linux/session/focus_watch.h"

#include <xcb/xcb.h>

#include <QTimer>
#include <cstring>
#include <utility>

#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin {

namespace {

/// The bits of a window's number that tell which client made it.
std::uint32_t clientOf(xcb_connection_t* connection, xcb_window_t window) {
  return window & ~xcb_get_setup(connection)->resource_id_mask;
}

xcb_window_t focusedWindow(xcb_connection_t* connection) {
  const auto reply =
      ownReply(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  return reply ? reply->focus : static_cast<xcb_window_t>(XCB_NONE);
}

/// A window that the window manager made; none without one that keeps to the conventions.
xcb_window_t windowOfManager(xcb_connection_t* connection, xcb_window_t root) {
  const auto request = xcb_get_property(
      connection, 0, root, xcbAtom(connection, "_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 0, 1);
  const auto reply = ownReply(xcb_get_property_reply(connection, request, nullptr));
  xcb_window_t window = XCB_NONE;
  if (reply && xcb_get_property_value_length(reply.get()) == sizeof(window)) {
    std::memcpy(&window, xcb_get_property_value(reply.get()), sizeof(window));
  }
  return window;
}

/// Whether a program that is neither this one nor the window manager has the keyboard.
bool isFocusOfOthers(xcb_connection_t* connection, xcb_window_t own) {
  const xcb_window_t focus = focusedWindow(connection);
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  if (focus == XCB_NONE || focus == XCB_INPUT_FOCUS_POINTER_ROOT || focus == root) return false;
  const std::uint32_t client = clientOf(connection, focus);
  return client != clientOf(connection, own) &&
         client != clientOf(connection, windowOfManager(connection, root));
}

/// The server tells of the keyboard coming and going with the pointer alone in its own terms.
bool isAboutPointer(const xcb_focus_in_event_t& event) {
  return event.detail == XCB_NOTIFY_DETAIL_POINTER ||
         event.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT;
}

}  // namespace

FocusWatch::FocusWatch(QGuiApplication& application, std::function<void()> changed)
    : QObject(&application), application_(application), changed_(std::move(changed)) {
  application_.installNativeEventFilter(this);
}

bool FocusWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
  if (eventType != "xcb_generic_event_t") return false;
  const auto type =
      static_cast<const xcb_generic_event_t*>(message)->response_type & ~std::uint8_t{0x80};
  if (type != XCB_FOCUS_IN && type != XCB_FOCUS_OUT) return false;
  const auto& event = *static_cast<const xcb_focus_in_event_t*>(message);
  if (isAboutPointer(event)) return false;
  const auto* const x11 = application_.nativeInterface<QNativeInterface::QX11Application>();
  setFocusElsewhere(type == XCB_FOCUS_OUT && isFocusOfOthers(x11->connection(), event.event));
  return false;
}

void FocusWatch::setFocusElsewhere(bool isElsewhere) {
  if (std::exchange(isFocusElsewhere_, isElsewhere) == isElsewhere) return;
  // The library has not taken up the event yet.
  QTimer::singleShot(0, this, [this] { changed_(); });
}

}  // namespace vorrin
