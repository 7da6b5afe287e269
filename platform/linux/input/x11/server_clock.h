#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace vorrin::x11 {

/// Tells how long ago the server made an event that has only now been read.
///
/// The server stamps events with its own milliseconds, which start anywhere and wrap around after
/// 49 days. The least difference to the local clock ever seen is that of an event read at once, so
/// whatever exceeds it is delay. Where server and client are different machines their clocks drift
/// apart, so before an event is called old the clock has to be set anew.
class ServerClock {
 public:
  using Local = std::chrono::milliseconds;  ///< any monotonic clock of this machine

  /// Takes `serverTime` for the server's time at `now`.
  void set(std::uint32_t serverTime, Local now);

  /// The delay of an event stamped `serverTime` that is read at `now`; 0 before the first `set`.
  Local age(std::uint32_t serverTime, Local now);

 private:
  std::optional<std::uint32_t> difference_;  // local minus server time, modulo 2^32
};

}  // namespace vorrin::x11
