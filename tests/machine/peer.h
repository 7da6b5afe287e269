#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "input_helper/protocol/packet_socket.h"

namespace vorrin::machine {

/// A main program's end of a connection to the helper, with the test as the main program.
class Peer {
 public:
  explicit Peer(FileDescriptor connection) : connection_(std::move(connection)) {}

  /// What to answer a question with; nothing leaves it open.
  std::function<std::optional<bool>(const helper_protocol::KeyMoved&)> verdict =
      [](const helper_protocol::KeyMoved&) { return true; };

  /// Reads what the helper said, answering questions.
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
  void configure(const std::vector<std::uint16_t>& keys, bool enabled = true) const;
  /// Makes a press and a release of a digit, or of the left button (0).
  void post(std::uint8_t key) const;
  void hangUp() { connection_ = {}; }
  /// Whether the helper closed the connection.
  [[nodiscard]] bool isLeft() const { return isLeft_; }
  /// For waiting until it says something.
  [[nodiscard]] int connection() const { return connection_.get(); }

 private:
  FileDescriptor connection_;
  bool isLeft_ = false;
  std::vector<helper_protocol::FromHelper> said_;
};

}  // namespace vorrin::machine
