#include "platform/linux/input/x11/connection.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <csignal>

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

void Connection::sync() const {
  ownReply(xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr));
}

}  // namespace vorrin::x11
