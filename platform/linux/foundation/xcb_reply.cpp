#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin {

xcb_atom_t xcbAtom(xcb_connection_t* connection, std::string_view name) {
  constexpr std::uint8_t makeItIfMissing = 0;
  const auto request = xcb_intern_atom(connection, makeItIfMissing,
                                       static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = ownReply(xcb_intern_atom_reply(connection, request, nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::vector<std::uint32_t> xcbProperty(xcb_connection_t* connection, xcb_window_t window,
                                       std::string_view name) {
  constexpr std::uint32_t most = 4096;
  const auto request =
      xcb_get_property(connection, 0, window, xcbAtom(connection, name), XCB_ATOM_ANY, 0, most);
  const auto reply = ownReply(xcb_get_property_reply(connection, request, nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

bool areOfOneClient(xcb_connection_t* connection, xcb_window_t one, xcb_window_t other) {
  return ((one ^ other) & ~xcb_get_setup(connection)->resource_id_mask) == 0;
}

}  // namespace vorrin
