#include "platform/linux/widgets/toolkit_connection.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <QGuiApplication>
#include <QWindow>

#include "platform/linux/foundation/xcb_reply.h"
#include "platform/linux/foundation/xcb_xkb.h"

namespace vorrin {

namespace {

void leaveOutPointerButtons(xcb_connection_t* connection) {
  xcb_xkb_select_events_details_t details{};
  details.affectState = XCB_XKB_STATE_PART_POINTER_BUTTONS;
  xcb_xkb_select_events_aux(connection, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0,
                            0, 0, 0, &details);
}

void leaveOutProperties(xcb_connection_t* connection, xcb_window_t window) {
  const auto request = xcb_get_window_attributes(connection, window);
  const auto reply = ownReply(xcb_get_window_attributes_reply(connection, request, nullptr));
  if (!reply) return;
  const std::uint32_t events =
      reply->your_event_mask & ~std::uint32_t{XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &events);
  xcb_flush(connection);
}

void tellOfKeyboardMaps(xcb_connection_t* connection, bool isTold) {
  constexpr std::uint16_t events =
      XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr std::uint16_t everyPart = 0xFF;
  xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, isTold ? 0 : events,
                        isTold ? events : 0, everyPart, isTold ? everyPart : 0, nullptr);
  xcb_flush(connection);
}

/// Has the toolkit read the map as if the server had just announced it to `window`.
void announceKeyboardMap(xcb_connection_t* connection, const QWindow& window) {
  xcb_xkb_map_notify_event_t event{};
  event.response_type = xcb_get_extension_data(connection, &xcb_xkb_id)->first_event;
  event.xkbType = XCB_XKB_MAP_NOTIFY;
  event.deviceID = static_cast<std::uint8_t>(xkb_x11_get_core_keyboard_device_id(connection));
  static_assert(sizeof event == 32, "the size of an event as the server takes it");
  // Without a mask the server gives it to the client that made the window.
  xcb_send_event(connection, 0, static_cast<xcb_window_t>(window.winId()), XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(connection);
}

}  // namespace

xcb_connection_t* toolkitConnection() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // The toolkit's offscreen mode passes for X11 too, without a connection.
  return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

void leaveOutNewsOfOthers() {
  auto* const connection = toolkitConnection();
  if (connection == nullptr) return;
  leaveOutProperties(connection, rootWindow(connection));
  const auto* const keyboards = xcb_get_extension_data(connection, &xcb_xkb_id);
  if (keyboards == nullptr || keyboards->present == 0) return;
  leaveOutPointerButtons(connection);
  tellOfKeyboardMaps(connection, false);
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, qGuiApp,
                   [connection](Qt::ApplicationState state) {
                     tellOfKeyboardMaps(connection, state == Qt::ApplicationActive);
                     const QWindow* const window = QGuiApplication::focusWindow();
                     if (state == Qt::ApplicationActive && window != nullptr) {
                       announceKeyboardMap(connection, *window);
                     }
                   });
}

}  // namespace vorrin
