#include "platform/linux/widgets/window_activation.h"

#include <QGuiApplication>
#include <QWidget>
#include <array>
#include <cstring>
#include <optional>

#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin {

namespace {

/// Who asks, as the conventions of window managers number it: the user, through a pager or the
/// like.
constexpr std::uint32_t onBehalfOfUser = 2;

constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

/// Talks to the window manager about one window.
class WindowManager {
 public:
  WindowManager(xcb_connection_t* connection, xcb_window_t window)
      : connection_(connection),
        window_(window),
        root_(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {}

  void moveToCurrentDesktop() const {
    const auto current = number(root_, "_NET_CURRENT_DESKTOP");
    const auto own = number(window_, "_NET_WM_DESKTOP");
    if (!current || !own || own == current || own == allDesktops) return;
    ask("_NET_WM_DESKTOP", *current, onBehalfOfUser);
  }

  void activate() const { ask("_NET_ACTIVE_WINDOW", onBehalfOfUser, XCB_CURRENT_TIME); }

 private:
  void ask(std::string_view message, std::uint32_t first, std::uint32_t second) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window_;
    event.type = xcbAtom(connection_, message);
    event.data.data32[0] = first;
    event.data.data32[1] = second;
    // The server copies as many bytes as every event has.
    std::array<char, 32> bytes{};
    static_assert(sizeof(event) == bytes.size());
    std::memcpy(bytes.data(), &event, bytes.size());
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   bytes.data());
    xcb_flush(connection_);
  }

  [[nodiscard]] std::optional<std::uint32_t> number(xcb_window_t window,
                                                    std::string_view property) const {
    const auto items = xcbProperty(connection_, window, property);
    return items.size() == 1 ? std::optional(items.front()) : std::nullopt;
  }

  xcb_connection_t* connection_;
  xcb_window_t window_;
  xcb_window_t root_;
};

}  // namespace

void bringToFront(QWidget& window) {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  const bool isOnX11 = x11 != nullptr && x11->connection() != nullptr;
  // The widget library waits until the desktop of the window is shown, and then asks in the
  // program's own name, which window managers may refuse while the user works elsewhere.
  if (isOnX11) {
    WindowManager(x11->connection(), static_cast<xcb_window_t>(window.winId()))
        .moveToCurrentDesktop();
  }
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
  if (isOnX11) {
    WindowManager(x11->connection(), static_cast<xcb_window_t>(window.winId())).activate();
  }
}

}  // namespace vorrin
