#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace vorrin::x11 {

/// Why the program itself sent a key event to the X server.
struct Post {
  enum class Reason {
    posted,    ///< asked for by the program; its tap sees it with `userData`
    forwarded  ///< a user's key sent on in the user's stead; the tap has seen the original
  };
  Reason reason = Reason::posted;
  std::int64_t userData = 0;
};

/// Remembers the key events that this connection asked the server to make, so that each is known
/// again when it comes back.
///
/// Key events of all XTEST clients come from one device, so nothing in an event names its maker.
/// But the server makes the event while it serves the request, and so reports it to this connection
/// under the serial number of that request. Another client's event can carry the same serial only
/// if it was made later, when the entry is spent.
class PostLedger {
 public:
  /// Enters the request `serial`. Serials must increase from call to call. When the ledger is full
  /// the oldest entry is given up.
  void add(unsigned long serial, unsigned keycode, bool down, Post post);

  /// The entry of a key event just read, spent by this; nothing when the event is not our own.
  /// Events must be given in the order they were read.
  std::optional<Post> take(unsigned long serial, unsigned keycode, bool down);

 private:
  struct Entry {
    unsigned long serial = 0;
    unsigned keycode = 0;
    bool down = false;
    Post post;
  };
  // Several seconds of a macro at its fastest, should the main loop be held up for so long.
  static constexpr std::size_t capacity = 8192;
  std::array<Entry, capacity> entries_;
  std::size_t first_ = 0;
  std::size_t count_ = 0;
};

}  // namespace vorrin::x11
