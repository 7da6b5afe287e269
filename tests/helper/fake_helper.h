#pragma once

#include <QCoreApplication>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "input_helper/protocol/packet_socket.h"
#include "platform/linux/input/helper/backend.h"

namespace vorrin::helper {

/// The other end of a backend's connection: a helper that does as a test says.
class FakeHelper {
 public:
  bool devicesAreOpen = true;
  bool allowed = false;    ///< what polkit answers when it may not ask the user
  bool isMissing = false;  ///< no process can be made of it
  bool isGone = false;     ///< it ends before it takes its end of the connection

  /// Makes the backend start this helper instead of a process.
  HelperStart start();

  /// How it was started, each time.
  [[nodiscard]] const std::vector<StartWay>& starts() const { return starts_; }

  void say(const helper_protocol::FromHelper& message);
  void sayBytes(const std::string& bytes);
  /// Says hello and that the keyboards can be held.
  void serve(bool available = true);
  void hangUp() { connection_.reset(); }
  /// Has the process end with this status, as pkexec does when it may not start the helper.
  void end(int status);

  /// All that the backend said by now.
  std::vector<helper_protocol::ToHelper> heard();
  /// Whether the backend has closed the connection.
  bool isLeft();

 private:
  helper_protocol::FileDescriptor connection_;
  std::function<void(int)> ended_;
  std::vector<StartWay> starts_;
};

}  // namespace vorrin::helper
