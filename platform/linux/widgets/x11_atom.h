#pragma once

#include <xcb/xcb.h>

#include <string_view>

namespace vorrin {

/// The number that the X server knows `name` by; 0 when the server is lost.
xcb_atom_t x11Atom(xcb_connection_t* connection, std::string_view name);

}  // namespace vorrin
