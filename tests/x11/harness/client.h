#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/x11/harness/process.h"
#include "tests/x11/harness/user.h"

namespace vorrin::x11_tests {

/// Something that a program in front received.
struct ClientEvent {
  std::string kind;          ///< "KeyPress", "ButtonRelease", "FocusOut"...
  unsigned detail = 0;       ///< key code of the server's, button, or mode of a focus change
  unsigned state = 0;        ///< modifiers and buttons, as X counts them
  std::int64_t arrival = 0;  ///< nanoseconds of the monotonic clock
};

/// A program of somebody else's with the focus, that writes down what it receives.
class Client {
 public:
  /// Returns when its window has the focus.
  explicit Client(const std::string& display, const std::string& title = "client");

  [[nodiscard]] unsigned long window() const { return window_; }

  /// Reads on up to an event for which `wanted` holds, and gives all of them; throws
  /// std::runtime_error when it does not come in time.
  std::vector<ClientEvent> readUntil(const std::function<bool(const ClientEvent&)>& wanted,
                                     std::chrono::milliseconds bound = patience);

  /// All that it received up to now.
  std::vector<ClientEvent> readAll(User& user);

  Process& process() { return process_; }

 private:
  Process process_;
  unsigned long window_ = 0;
};

/// Recognises the release of this key.
std::function<bool(const ClientEvent&)> releaseOf(std::uint16_t virtualKey);

/// Recognises, asked about each event in turn, so many of this kind.
std::function<bool(const ClientEvent&)> nth(int count, const std::string& kind);

/// The key presses and releases among `events` in short form: "+38 -38" for key code 38.
std::string keysOf(const std::vector<ClientEvent>& events);

/// The characters that the presses among `events` type, of those that `User::type` knows.
std::string textOf(const std::vector<ClientEvent>& events);

/// How many of `events` are of this kind.
std::size_t countOf(const std::vector<ClientEvent>& events, const std::string& kind);

/// The macOS code of the key that the harness types to learn how far the client has read. No test
/// gives it a meaning, and it shows in no result.
inline constexpr std::uint16_t clientMark = 0x6F;

}  // namespace vorrin::x11_tests
