#include "input_helper/protocol/packet_socket.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>

namespace vorrin::helper_protocol {

std::optional<std::pair<FileDescriptor, FileDescriptor>> makeSocketPair() {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
    return std::nullopt;
  return std::pair(FileDescriptor(ends[0]), FileDescriptor(ends[1]));
}

Received receivePacket(int socket, Packet& packet) {
  packet.size = 0;
  const auto size =
      ::recv(socket, packet.bytes.data(), packet.bytes.size(), MSG_DONTWAIT | MSG_TRUNC);
  if (size < 0) return errno == EAGAIN || errno == EINTR ? Received::nothing : Received::end;
  // A zero-length packet looks like the end; no message has that form, so both end the connection.
  if (size == 0) return Received::end;
  if (static_cast<std::size_t>(size) <= packet.bytes.size())
    packet.size = static_cast<std::size_t>(size);
  return Received::packet;
}

bool sendPacket(int socket, const Packet& packet) {
  const auto size = ::send(socket, packet.bytes.data(), packet.size, MSG_DONTWAIT | MSG_NOSIGNAL);
  return size == static_cast<ssize_t>(packet.size);
}

}  // namespace vorrin::helper_protocol
