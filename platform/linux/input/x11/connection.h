#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace vorrin::x11 {

/// The program's own connection to the X server, apart from the widget library's: listening and
/// posting need one connection in common whose requests nobody else numbers.
///
/// An error (of a device that was unplugged a moment ago, say) comes among the events, where nobody
/// looks at it; who needs to know reads the reply.
class Connection {
 public:
  /// Connects to the server that DISPLAY names. Nothing comes back without one, or when it lacks
  /// XKB, XTEST or XInput 2.2, the first version whose raw events reach us while another program
  /// grabs the keyboard.
  static std::optional<Connection> open();

  [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }

  /// Whether the server is gone. Calls have no effect then.
  [[nodiscard]] bool lost() const { return xcb_connection_has_error(get()) != 0; }

  /// What marks the events of XInput, as an extension, and of XKB, as a type.
  [[nodiscard]] std::uint8_t inputExtension() const { return inputExtension_; }
  [[nodiscard]] std::uint8_t xkbEvent() const { return xkbEvent_; }

  /// The root windows of all screens.
  [[nodiscard]] std::vector<xcb_window_t> roots() const;

  /// Hands the server what was asked of it; `sync` also waits until that is done.
  void flush() const { xcb_flush(get()); }
  void sync() const;

 private:
  explicit Connection(xcb_connection_t* connection) : connection_(connection) {}
  [[nodiscard]] bool findExtensions();

  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::uint8_t inputExtension_ = 0;
  std::uint8_t xkbEvent_ = 0;
};

}  // namespace vorrin::x11
