#pragma once

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <functional>
#include <optional>
#include <string>

namespace vorrin::input_helper {

inline constexpr const char* loginManagerName = "org.freedesktop.login1";

/// A login session as the login manager describes it.
struct Session {
  std::string path;  ///< its name on the bus
  uid_t user = 0;
  std::string userName;
  std::string seat;
  std::string sessionClass;
  bool isRemote = true;
  bool isInFront = false;
  bool isLocked = false;        ///< by the hint that desktops give the login manager
  bool wasAskedToLock = false;  ///< and not yet told to unlock: not every locker gives the hint

  /// Takes over the properties of a reply or a signal; false when they are none.
  [[nodiscard]] bool read(sd_bus_message* properties);
  /// Whether a user sits in it, at the first seat.
  [[nodiscard]] bool isAtFirstSeat() const;
};

/// Whoever sent a message: found by the unique name, never by what they say.
struct Caller {
  std::string name;
  uid_t user = 0;
  /// The session that the process belongs to. One that the user's service manager started belongs
  /// to none, and then it is the one on the user's display.
  std::optional<Session> session;
};

/// Nothing when the bus does not know who it was. Waits for the bus and the login manager, but not
/// for long.
std::optional<Caller> findCaller(sd_bus_message* message);

using ChangeSession =
    std::function<void(const std::string& path, const std::function<void(Session&)>& change)>;
/// Hears what the login manager tells later. A session that is gone is made an empty one.
void hearSessions(sd_bus* bus, const ChangeSession& changed, std::function<void(bool)> sleep);

}  // namespace vorrin::input_helper
