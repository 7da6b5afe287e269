#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "input_helper/authority.h"
#include "input_helper/bus.h"
#include "input_helper/connection.h"
#include "input_helper/grants.h"
#include "input_helper/session.h"

namespace vorrin::input_helper {

/// The helper as others see it on the system bus: connects one main program, of the session in
/// front at the first seat, if its user may have it, and lets go of it as soon as that cannot be
/// known any more. Ends the event loop when nobody has wanted anything of it for a while.
class Service {
 public:
  Service(sd_event* loop, sd_bus* bus, Uinput& uinput, const Grants& grants);
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  enum class Wish { connect, allow, askEveryTime, takeBack };

  /// Answers the call, now or later.
  int take(sd_bus_message* call, Wish wish);

 private:
  /// A call that polkit has to decide about.
  struct Request {
    Message call;
    Wish wish;
    Caller caller;
    std::string question;  ///< the name of a check that may ask the user; empty for others
  };
  using RequestPointer = std::shared_ptr<Request>;

  void authorize(const RequestPointer& request);
  void decide(const RequestPointer& request, const Authorization& authorization);
  void connect(const RequestPointer& request, bool isStanding);
  void takeBack(const Caller& caller);
  int store(sd_bus_message* call, const Caller& caller, Decision decision);
  void refuse(const RequestPointer& request, const char* words);
  void forget(const RequestPointer& request);
  [[nodiscard]] Decision decisionOf(const Caller& caller) const;

  void checkAgain();
  void changeSession(const std::string& path, const std::function<void(Session&)>& change);
  void followHolder();
  void followOwner(const std::string& name);
  void tick();
  void sweep();

  sd_event* loop_;
  sd_bus* bus_;
  Uinput& uinput_;
  const Grants& grants_;
  std::map<std::string, RequestPointer> requests_;  ///< by the caller's name: one each
  unsigned questions_ = 0;                          ///< asked so far
  bool isAsleep_ = false;
  int idleSeconds_ = 0;
  Awaited tick_;
  Caller holder_;            ///< whom the connection serves, while there is one; has a session
  bool isStanding_ = false;  ///< the holder's permission was given by a rule, which lasts
  std::optional<Connection> connection_;
};

/// Serves on the system bus until nobody wants it any more; returns the exit status. `decisions`:
/// the folder that `Grants` keeps.
int serve(Uinput& uinput, const char* decisions);

}  // namespace vorrin::input_helper
