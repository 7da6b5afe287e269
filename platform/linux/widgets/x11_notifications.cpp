#include "platform/linux/widgets/x11_notifications.h"

#include <QGuiApplication>

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
}

}  // namespace

void leaveOutNewsOfClicks() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // The toolkit's offscreen mode passes for X11 too, without a connection.
  auto* const connection = x11 != nullptr ? x11->connection() : nullptr;
  if (connection == nullptr) return;
  leaveOutPointerButtons(connection);
  leaveOutProperties(connection, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root);
  xcb_flush(connection);
}

}  // namespace vorrin
