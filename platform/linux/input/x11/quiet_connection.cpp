#include "platform/linux/input/x11/quiet_connection.h"

#include <cstdlib>

// Its names include a word of this language.
#if defined(__clang__)
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicitly
#include <xcb/xkb.h>
#undef explicit

namespace vorrin::x11 {

namespace {

/// A client that uses XKB is told of no map that it has not asked for.
bool useXkb(xcb_connection_t* connection) {
  const auto* const extension = xcb_get_extension_data(connection, &xcb_xkb_id);
  if (extension == nullptr || extension->present == 0) return false;
  const auto request =
      xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
  const std::unique_ptr<xcb_xkb_use_extension_reply_t, decltype(&std::free)> reply(
      xcb_xkb_use_extension_reply(connection, request, nullptr), &std::free);
  return reply != nullptr;
}

}  // namespace

QuietConnection openQuietConnection(int& screen) {
  // Given back even without a server.
  QuietConnection connection(xcb_connect(nullptr, &screen));
  if (xcb_connection_has_error(connection.get()) != 0 || !useXkb(connection.get())) return nullptr;
  return connection;
}

}  // namespace vorrin::x11
