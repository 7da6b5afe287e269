#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "input_helper/protocol/packet_socket.h"

namespace vorrin::machine {

/// The real helper as a child, with the test as its main program.
class HelperProcess {
 public:
  /// Starts it; `greet` says hello as the main program does.
  explicit HelperProcess(bool greet = true);
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;
  ~HelperProcess();

  /// What to answer a question with; nothing leaves it open.
  std::function<std::optional<bool>(const helper_protocol::Question&)> verdict =
      [](const helper_protocol::Question&) { return true; };

  /// Reads what it said, answering questions.
  void listen();
  [[nodiscard]] const std::vector<helper_protocol::FromHelper>& said() const { return said_; }
  void forget() { said_.clear(); }
  template <class Message>
  [[nodiscard]] std::vector<Message> saidOf() const {
    std::vector<Message> messages;
    for (const auto& message : said_) {
      if (const auto* fitting = std::get_if<Message>(&message)) messages.push_back(*fitting);
    }
    return messages;
  }

  void say(const helper_protocol::ToHelper& message) const;
  void sayBytes(const std::string& bytes) const;
  /// The same by a process that is not its main program.
  void sayAsAnotherProgram(const helper_protocol::ToHelper& message) const;
  void configure(std::vector<std::uint16_t> keys, bool enabled = true) const;
  /// Makes a press and a release of a digit, or of the left button (0), `times` times.
  void post(std::uint16_t key, int times = 1) const;
  void hangUp() { connection_.reset(); }
  /// For waiting until it says something.
  [[nodiscard]] int connection() const { return connection_.number(); }

  /// Whether the whole of it has ended; then with which status.
  [[nodiscard]] bool ended();
  [[nodiscard]] int status() const { return status_; }
  /// A file that was open when it was started.
  [[nodiscard]] static const char* leftOpen() { return "/etc/passwd"; }
  /// What it wrote to its log.
  [[nodiscard]] std::string log() const;

  [[nodiscard]] pid_t privilegedPart() const { return process_; }
  /// The process that reads the keyboards; 0 before it is there.
  [[nodiscard]] pid_t workingPart() const;

 private:
  helper_protocol::FileDescriptor connection_;
  helper_protocol::FileDescriptor log_;
  pid_t process_ = 0;
  bool ended_ = false;
  int status_ = 0;
  std::vector<helper_protocol::FromHelper> said_;
};

}  // namespace vorrin::machine
