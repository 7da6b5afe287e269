#pragma once

#include <memory>
#include <utility>

#include "platform/linux/input/x11/quiet_connection.h"

namespace vorrin::x11 {

/// Presses and releases the left button through XTEST. The connection is its own, because nothing
/// that it asks for is answered by an event: there is nothing to read and so nothing to wait for.
class Clicker {
 public:
  /// Connects to the server that DISPLAY names. Nothing comes back without one, or when it lacks
  /// XTEST or XKB.
  static std::unique_ptr<Clicker> open();

  /// Lets go of the button if it is down.
  ~Clicker();
  Clicker(const Clicker&) = delete;
  Clicker& operator=(const Clicker&) = delete;

  /// Whether the server is gone. Nothing can be done about that any more.
  [[nodiscard]] bool lost() const { return xcb_connection_has_error(connection_.get()) != 0; }

  /// The connection's.
  [[nodiscard]] int descriptor() const { return xcb_get_file_descriptor(connection_.get()); }

  /// Queues one event; `flush` hands it to the server. No round trip, no allocation.
  void leftButton(bool down);
  void flush();

 private:
  explicit Clicker(QuietConnection connection) : connection_(std::move(connection)) {}

  QuietConnection connection_;
  bool isDown_ = false;
};

}  // namespace vorrin::x11
