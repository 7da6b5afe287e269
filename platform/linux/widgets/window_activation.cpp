#include "platform/linux/widgets/window_activation.h"

#include <QWidget>
#include <string_view>

#include "platform/linux/foundation/xcb_reply.h"
#include "platform/linux/widgets/toolkit_connection.h"

namespace vorrin {

namespace {

/// Who asks, as the conventions of window managers number it: the user, through a pager or the
/// like.
constexpr std::uint32_t onBehalfOfUser = 2;

constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

/// Asks the window manager something about a window.
void ask(xcb_connection_t* connection, xcb_window_t window, std::string_view message,
         std::uint32_t first, std::uint32_t second) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = xcbAtom(connection, message);
  event.data.data32[0] = first;
  event.data.data32[1] = second;
  static_assert(sizeof event == 32, "the size of an event as the server takes it");
  xcb_send_event(connection, 0, rootWindow(connection),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(connection);
}

void moveToCurrentDesktop(xcb_connection_t* connection, xcb_window_t window) {
  const auto current = xcbProperty(connection, rootWindow(connection), "_NET_CURRENT_DESKTOP");
  const auto own = xcbProperty(connection, window, "_NET_WM_DESKTOP");
  if (current.size() != 1 || own.size() != 1 || own == current || own[0] == allDesktops) return;
  ask(connection, window, "_NET_WM_DESKTOP", current[0], onBehalfOfUser);
}

}  // namespace

void bringToFront(QWidget& window) {
  xcb_connection_t* const connection = toolkitConnection();
  // The widget library waits until the desktop of the window is shown, and then asks in the
  // program's own name, which window managers may refuse while the user works elsewhere.
  if (connection != nullptr) {
    moveToCurrentDesktop(connection, static_cast<xcb_window_t>(window.winId()));
  }
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
  if (connection != nullptr) {
    ask(connection, static_cast<xcb_window_t>(window.winId()), "_NET_ACTIVE_WINDOW", onBehalfOfUser,
        XCB_CURRENT_TIME);
  }
}

}  // namespace vorrin
