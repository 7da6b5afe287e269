#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::machine {

/// Whether a shell says that the command went well.
bool succeeds(const std::string& command);
/// What a command prints, as far as its first line goes.
std::string outputOf(const std::string& command);

/// A user of the test machine.
struct User {
  std::string name;
  uid_t number;
};
inline const User player{"player", 4242};
inline const User visitor{"visitor", 4243};

/// A user logged in at a console, by the real login manager. The machine's first console is in
/// front at the beginning. Logs out when the value goes.
class Login {
 public:
  explicit Login(const User& user, int console = 1);
  Login(const Login&) = delete;
  Login& operator=(const Login&) = delete;
  ~Login();

  [[nodiscard]] const std::string& id() const { return id_; }

  /// Makes this process one of the session's, with its user's rights and no more.
  void enter() const;
  /// The command as a process of the session runs it.
  [[nodiscard]] std::vector<std::string> inside(const std::vector<std::string>& command) const;
  /// The exit status of a process of the session that does this.
  [[nodiscard]] int run(const std::function<int()>& action) const;

 private:
  User user_;
  std::string unit_;
  std::string id_;
  std::string group_;  ///< where the system groups the session's processes
};

/// The player's, at the first console, for all tests together: logging in takes long.
const Login& playerLogin();

/// What a user decided about being asked, as the service keeps it.
inline const std::string decisions = "/var/lib/vorrin-input-helper";
void allow(const User& user);
void forgetDecisions();

/// A program of a session that calls the helper's service.
class Caller {
 public:
  explicit Caller(const Login& login);
  Caller(const Caller&) = delete;
  Caller& operator=(const Caller&) = delete;
  ~Caller();

  struct Answer {
    std::string error;  ///< empty when the call succeeded
    FileDescriptor socket;
  };
  /// Calls "Connect" and the like; a "?" before it allows questions to the user.
  void start(const std::string& method) const;
  /// The answer to the last call; nothing when none comes in time.
  [[nodiscard]] std::optional<Answer> take() const;
  [[nodiscard]] Answer call(const std::string& method) const;

  [[nodiscard]] pid_t process() const { return process_; }

 private:
  FileDescriptor socket_;
  pid_t process_ = 0;
};

}  // namespace vorrin::machine
