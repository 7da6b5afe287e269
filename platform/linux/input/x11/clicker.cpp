#include "platform/linux/input/x11/clicker.h"

#include <xcb/xtest.h>

#include <cstdlib>
#include <utility>

namespace vorrin::x11 {

std::unique_ptr<Clicker> Clicker::open() {
  int screen = 0;
  QuietConnection connection = openQuietConnection(screen);
  if (!connection) return nullptr;
  const auto* const extension = xcb_get_extension_data(connection.get(), &xcb_test_id);
  if (extension == nullptr || extension->present == 0) return nullptr;
  return std::unique_ptr<Clicker>(new Clicker(std::move(connection)));
}

Clicker::~Clicker() {
  // The server keeps the button down when the client that pressed it is gone.
  if (isDown_) leftButton(false);
  // Any answer will do: what the server has not read when the connection ends, it gives up.
  std::free(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()),
                                      nullptr));
}

void Clicker::leftButton(bool down) {
  // With a time to come the server would hold up all other requests of this connection.
  constexpr std::uint32_t atOnce = XCB_CURRENT_TIME;
  xcb_test_fake_input(connection_.get(), down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE,
                      XCB_BUTTON_INDEX_1, atOnce, XCB_NONE, 0, 0, 0);
  isDown_ = down;
}

void Clicker::flush() {
  xcb_flush(connection_.get());
}

}  // namespace vorrin::x11
