#pragma once

#include <functional>
#include <string>
#include <vector>

#include "input_helper/protocol/packet_socket.h"
#include "platform/linux/input/helper/helper_service.h"

namespace vorrin::helper {

/// The packet that the message travels as.
std::string bytesOf(const helper_protocol::FromHelper& message);

/// The other end of a backend's connection: a helper that does as a test says.
class FakeHelper {
 public:
  bool isAllowed = true;  ///< without a question
  bool isSilent = false;  ///< calls are answered by `answer` only
  bool isGone = false;    ///< it ends before it serves

  /// What the backend reaches instead of the system bus.
  CallHelper service();

  /// A word for each call: "connect", "ask" (where a question may be asked), or the wish.
  [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
  void answer() { pending_(); }

  void say(const helper_protocol::FromHelper& message);
  void sayBytes(const std::string& bytes);
  /// Says that the keyboards can be held.
  void serve() { say(helper_protocol::Availability{}); }
  void hangUp() { connection_ = {}; }

  /// All that the backend said by now.
  std::vector<helper_protocol::ToHelper> heard();
  /// Whether the backend has closed the connection.
  bool isLeft();

 private:
  Reply connect(bool mayAsk);

  FileDescriptor connection_;
  std::vector<std::string> calls_;
  std::function<void()> pending_;
};

}  // namespace vorrin::helper
