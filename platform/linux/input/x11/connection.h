#pragma once

// Xlib's macros (None, Bool, KeyPress...) break Qt's headers and the tests': this header is for the
// sources of this folder that see neither.
#include <X11/Xlib.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace vorrin::x11 {

/// The program's own connection to the X server, apart from the widget library's: listening and
/// posting need one connection in common whose requests nobody else numbers.
///
/// Neither an X error nor the loss of the server ends the process. Errors (a device that was
/// unplugged a moment ago, a key that another program holds) are dropped; who needs to know looks
/// at the reply.
class Connection {
 public:
  /// Connects to the server that DISPLAY names. Nothing comes back without one, or when it lacks
  /// XKB, XTEST or XInput 2.2, the first version whose raw events reach us while another program
  /// grabs the keyboard.
  static std::unique_ptr<Connection> open();

  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// To be used only while not `lost`.
  [[nodiscard]] Display* display() const { return display_; }

  /// Whether the server is gone. No call of Xlib that talks to it may follow.
  [[nodiscard]] bool lost() const { return lost_; }

  /// Calls `action` within the Xlib call that finds the server gone.
  void onLoss(std::function<void()> action) { onLoss_ = std::move(action); }

  /// The major code that marks XInput's events, and the first number of XKB's.
  [[nodiscard]] int inputOpcode() const { return inputOpcode_; }
  [[nodiscard]] int xkbEventBase() const { return xkbEventBase_; }

  /// The server's clock in milliseconds, by a round trip; 0 when the server is lost meanwhile.
  [[nodiscard]] std::uint32_t serverTime() const;

 private:
  explicit Connection(Display* display);
  [[nodiscard]] bool findExtensions();

  Display* display_;
  Window window_ = 0;
  int inputOpcode_ = 0;
  int xkbEventBase_ = 0;
  bool lost_ = false;
  std::function<void()> onLoss_;
};

}  // namespace vorrin::x11
