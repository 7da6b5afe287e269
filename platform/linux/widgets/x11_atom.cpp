#include "platform/linux/widgets/x11_atom.h"

#include <cstdlib>
#include <memory>

namespace vorrin {

xcb_atom_t x11Atom(xcb_connection_t* connection, std::string_view name) {
  constexpr std::uint8_t makeItIfMissing = 0;
  const auto request = xcb_intern_atom(connection, makeItIfMissing,
                                       static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(connection, request, nullptr), &std::free);
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

}  // namespace vorrin
