#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

namespace vorrin {

struct FreeXcbReply {
  void operator()(void* reply) const { std::free(reply); }
};

/// A reply of the X server. Null when the request failed or the server is lost.
template <class Reply>
using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;

/// Takes ownership of what a call of XCB returned: `ownReply(xcb_..._reply(...))`.
template <class Reply>
XcbReply<Reply> ownReply(Reply* reply) {
  return XcbReply<Reply>(reply);
}

/// The number that the X server knows `name` by; 0 when the server is lost.
xcb_atom_t xcbAtom(xcb_connection_t* connection, std::string_view name);

/// The items of a window's property, all of 32 bits; none when it has no such property.
std::vector<std::uint32_t> xcbProperty(xcb_connection_t* connection, xcb_window_t window,
                                       std::string_view name);

/// Whether one program has made both windows.
bool areOfOneClient(xcb_connection_t* connection, xcb_window_t one, xcb_window_t other);

}  // namespace vorrin
