#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorrin {

/// The address of a local socket, as the socket functions take it.
struct LocalSocketAddress {
  sockaddr_un address{};
  socklen_t length = 0;
};

/// One of the places where a message bus may be.
struct BusAddress {
  std::string transport;                    ///< "unix", "tcp"...
  std::optional<LocalSocketAddress> local;  ///< where the transport is a local socket with a name
};

/// Reads a list of addresses as the environment variables of the message buses hold it. Parts that
/// are no address are left out.
std::vector<BusAddress> readBusAddresses(std::string_view list);

}  // namespace vorrin
