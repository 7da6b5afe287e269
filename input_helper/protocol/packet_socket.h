#pragma once

#include <optional>
#include <utility>

#include "input_helper/protocol/protocol.h"
#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::helper_protocol {

/// What one attempt to receive found.
enum class Received {
  packet,   ///< a packet, possibly of a wrong length
  nothing,  ///< none is there now
  end,      ///< the other end is gone, or the connection failed
};

/// Two connected ends, both closed when another program is started; nothing on failure.
std::optional<std::pair<FileDescriptor, FileDescriptor>> makeSocketPair();

/// Receives one packet without waiting. A packet longer than any message comes back empty, which no
/// message decodes from.
Received receivePacket(int socket, Packet& packet);

/// Sends without waiting. False when the other end is gone or has left too much unread.
[[nodiscard]] bool sendPacket(int socket, const Packet& packet);

}  // namespace vorrin::helper_protocol
