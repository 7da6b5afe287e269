#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace vorrin {

/// A copy of this process that runs `body` and ends. Its standard error is kept.
class ChildProcess {
 public:
  /// The child ends with success when `body` gives true.
  explicit ChildProcess(const std::function<bool()>& body);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  /// Ends the child if it has not ended.
  ~ChildProcess();

  [[nodiscard]] pid_t id() const { return id_; }

  /// Waits for the end of the child; whether it ended with success.
  bool wait();

  /// Ends the child at once, wherever it is.
  void kill();

  /// What the child wrote to standard error until now.
  [[nodiscard]] std::string errors() const;

 private:
  pid_t id_ = 0;
  bool ended_ = false;
  bool succeeded_ = false;
  int errorFile_ = -1;
};

/// The number of lines in `text` that contain `part`.
int linesWith(const std::string& text, const std::string& part);

/// Makes the calling process one of a user without rights over other users' files. The tests of
/// containers run as root, to whom nothing is read-only.
void becomeOrdinaryUser();

/// The user that becomeOrdinaryUser makes of the caller.
uid_t ordinaryUser();

}  // namespace vorrin
