#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <span>

#include "input_helper/protocol/file_descriptor.h"
#include "input_helper/protocol/protocol.h"

namespace vorrin::helper_protocol {

/// What one attempt to receive found.
enum class Received {
  packet,   ///< a packet, possibly of a wrong length
  nothing,  ///< none is there now
  end,      ///< the other end is gone, or the connection failed
};

/// Two connected ends, both closed when another program is started; nothing on failure.
struct SocketPair {
  FileDescriptor first;
  FileDescriptor second;
};
std::optional<SocketPair> makeSocketPair();

/// Has every packet tell which process sent it, from now on and to either end. False on failure.
[[nodiscard]] bool nameSenders(int socket);

/// Receives one packet without waiting. A packet longer than any message comes back empty, which no
/// message decodes from. `sender`, where wanted, gets the process it came from, 0 if it is unnamed.
Received receivePacket(int socket, Packet& packet, pid_t* sender = nullptr);

/// Sends without waiting. False when the other end is gone or has left too much unread.
[[nodiscard]] bool sendPacket(int socket, const Packet& packet);

}  // namespace vorrin::helper_protocol
