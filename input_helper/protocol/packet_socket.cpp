#include "input_helper/protocol/packet_socket.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace vorrin::helper_protocol {

std::optional<SocketPair> makeSocketPair() {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
    return std::nullopt;
  return SocketPair{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

namespace {

pid_t senderOf(const msghdr& message) {
  const cmsghdr* header = CMSG_FIRSTHDR(&message);
  if (header == nullptr || header->cmsg_level != SOL_SOCKET ||
      header->cmsg_type != SCM_CREDENTIALS) {
    return 0;
  }
  ucred credentials{};
  std::memcpy(&credentials, CMSG_DATA(header), sizeof credentials);
  return credentials.pid;
}

}  // namespace

bool nameSenders(int socket) {
  const int on = 1;
  return ::setsockopt(socket, SOL_SOCKET, SO_PASSCRED, &on, sizeof on) == 0;
}

Received receivePacket(int socket, Packet& packet, pid_t* sender) {
  packet.size = 0;
  iovec part{packet.bytes.data(), packet.bytes.size()};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(ucred))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  ssize_t size = 0;
  do {
    size = ::recvmsg(socket, &message, MSG_DONTWAIT | MSG_TRUNC | MSG_CMSG_CLOEXEC);
  } while (size < 0 && errno == EINTR);
  if (size < 0) return errno == EAGAIN ? Received::nothing : Received::end;
  // A zero-length packet looks like the end; no message has that form, so both end the connection.
  if (size == 0) return Received::end;
  if (static_cast<std::size_t>(size) <= packet.bytes.size())
    packet.size = static_cast<std::size_t>(size);
  if (sender != nullptr) *sender = senderOf(message);
  return Received::packet;
}

bool sendPacket(int socket, const Packet& packet) {
  ssize_t size = 0;
  do {
    size = ::send(socket, packet.bytes.data(), packet.size, MSG_DONTWAIT | MSG_NOSIGNAL);
  } while (size < 0 && errno == EINTR);
  return size == static_cast<ssize_t>(packet.size);
}

}  // namespace vorrin::helper_protocol
