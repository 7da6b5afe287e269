#pragma once

#include <sys/types.h>

#include <span>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::x11 {

/// A process beside this one that holds connections to the X server open should this one be killed,
/// until the server has carried out what it was sent, some 50 ms longer than it takes. Without it a
/// kill in front of a server that lags left a key or button down one time in ten.
class ConnectionKeeper {
 public:
  /// Starts it for the connections with these descriptors, which stay the caller's. Where it cannot
  /// be started there is none, and nothing else changes.
  explicit ConnectionKeeper(std::span<const int> connections);

  /// Ends it.
  ~ConnectionKeeper();
  ConnectionKeeper(const ConnectionKeeper&) = delete;
  ConnectionKeeper& operator=(const ConnectionKeeper&) = delete;

 private:
  FileDescriptor pipe_;  ///< its other end tells the process that this one is gone
  pid_t process_ = -1;
};

}  // namespace vorrin::x11
