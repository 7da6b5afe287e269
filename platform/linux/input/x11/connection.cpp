#include "platform/linux/input/x11/connection.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin::x11 {

std::optional<Connection> Connection::open() {
  // The library writes to a server that is gone as to any other, and what follows by default ends
  // the process before anybody can say why.
  std::signal(SIGPIPE, SIG_IGN);
  Connection connection(xcb_connect(nullptr, nullptr));  // one comes back even without a server
  if (connection.lost() || !connection.findExtensions()) return std::nullopt;
  return connection;
}

bool Connection::findExtensions() {
  const auto* const input = xcb_get_extension_data(get(), &xcb_input_id);
  const auto* const test = xcb_get_extension_data(get(), &xcb_test_id);
  if (input == nullptr || input->present == 0 || test == nullptr || test->present == 0)
    return false;
  inputExtension_ = input->major_opcode;
  const auto request = xcb_input_xi_query_version(get(), 2, 2);
  const auto version = ownReply(xcb_input_xi_query_version_reply(get(), request, nullptr));
  if (!version || version->major_version < 2 ||
      (version->major_version == 2 && version->minor_version < 2)) {
    return false;
  }
  return xkb_x11_setup_xkb_extension(
             get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
             XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &xkbEvent_, nullptr) != 0;
}

std::vector<xcb_window_t> Connection::roots() const {
  std::vector<xcb_window_t> roots;
  for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(get())); screen.rem > 0;
       xcb_screen_next(&screen)) {
    roots.push_back(screen.data->root);
  }
  return roots;
}

bool Connection::sharesClock() const {
  constexpr std::int32_t tolerance = 1000;
  const auto time = serverTime();
  return time && std::abs(static_cast<std::int32_t>(monotonicTime() - *time)) < tolerance;
}

std::optional<std::uint32_t> Connection::serverTime() const {
  // Every change of a property is announced with its time, even one of no length.
  const auto window = xcb_generate_id(get());
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(get(), 0, window, roots().front(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                    XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
  xcb_change_property(get(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                      nullptr);
  xcb_destroy_window(get(), window);
  sync();
  std::optional<std::uint32_t> time;
  while (const auto event = ownReply(xcb_poll_for_queued_event(get()))) {
    if (event->response_type != XCB_PROPERTY_NOTIFY) continue;
    time = reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
  }
  return time;
}

void Connection::sync() const {
  ownReply(xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr));
}

std::uint32_t monotonicTime() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace vorrin::x11
