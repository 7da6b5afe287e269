#pragma once

#include <sys/types.h>

#include <optional>

namespace vorrin::input_helper {

/// Who holds the other end of the connection, as the kernel tells it.
struct Peer {
  pid_t process = 0;
  uid_t user = 0;
  gid_t group = 0;
};

/// The peer of the socket on `descriptor`; nothing when that is no packet socket with one.
std::optional<Peer> peerOf(int descriptor);

/// Makes the process independent of whoever started it: no environment, the root directory as
/// working directory, no open file but the three standard ones, no dump of its memory, no way to
/// gain rights, no stop from the starter's terminal.
void isolateProcess();

/// Gives up every right that `peer` has not. False when that fails.
[[nodiscard]] bool becomePeer(const Peer& peer);

/// Of root's rights, keeps only those needed to open devices and to end the unprivileged part.
[[nodiscard]] bool keepDeviceRights();

}  // namespace vorrin::input_helper
