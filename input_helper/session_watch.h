#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "input_helper/privileges.h"

namespace vorrin::input_helper {

/// Follows, over the system bus, the session that the main program runs in and the permission it
/// was given. Without a bus or a login manager the session counts as active and the permission as
/// lasting.
class SessionWatch {
 public:
  struct Changes {
    std::function<void(bool active)> activity;  ///< in front, unlocked and awake, or not
    std::function<void()> revoked;              ///< the permission was taken back
    std::function<void()> deaf;                 ///< the bus is gone; nothing is told any more
  };

  /// `permissionNeeded`: the process runs by the right that polkit gave to `peer`.
  SessionWatch(const Peer& peer, bool permissionNeeded, Changes changes);

  /// What to wait for, as poll() takes it; -1 without a bus.
  [[nodiscard]] int number() const;
  [[nodiscard]] short awaitedEvents() const;
  /// Handles everything that came.
  void dispatch();

  /// The user is at work in the session, so it cannot be locked: not every screen locker tells the
  /// login manager that it is done.
  void assumeUnlocked();
  [[nodiscard]] bool isActive() const { return inFront_ && !locked_ && !asleep_; }

 private:
  struct BusDeleter {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
  };
  using Handler = void (SessionWatch::*)(sd_bus_message*);

  void watchSession(const Peer& peer);
  void watchPermission(const Peer& peer);
  void readSession(const char* path);
  template <Handler handler>
  void match(const char* sender, const char* path, const char* interface, const char* member);
  template <Handler handler>
  static int handle(sd_bus_message* message, void* self, sd_bus_error* error);

  void propertiesChanged(sd_bus_message* message);
  void lockSignalled(sd_bus_message* message);
  void unlockSignalled(sd_bus_message* message);
  void sleepSignalled(sd_bus_message* message);
  void authorityChanged(sd_bus_message* message);
  void authorizationTold(sd_bus_message* message);
  void askAuthority();
  void report();

  Changes changes_;
  std::unique_ptr<sd_bus, BusDeleter> bus_;
  bool inFront_ = true;
  bool locked_ = false;
  bool asleep_ = false;
  bool reported_ = true;
  std::uint32_t peerProcess_ = 0;
  std::uint64_t peerStart_ = 0;
  bool standing_ = false;  ///< a rule gave the permission, for as long as it is there
};

}  // namespace vorrin::input_helper
