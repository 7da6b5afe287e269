#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin {

xcb_atom_t xcbAtom(xcb_connection_t* connection, std::string_view name) {
  constexpr std::uint8_t makeItIfMissing = 0;
  const auto request = xcb_intern_atom(connection, makeItIfMissing,
                                       static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = ownReply(xcb_intern_atom_reply(connection, request, nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

}  // namespace vorrin
