#pragma once

#include <cstdint>
#include <vector>

namespace vorrin::x11 {

/// Remembers key events that this connection asked the server to make, so that each is known again
/// when it comes back.
///
/// Key events of all XTEST clients come from one device, so nothing in an event names its maker.
/// But the server makes the event while it serves the request, and so reports it to this connection
/// under the sequence number of that request. Another client's event can carry the same number only
/// if it was made later, when the entry is spent.
class PostLedger {
 public:
  /// Enters the request `sequence`. The numbers must increase from call to call.
  void add(std::uint32_t sequence, unsigned keycode, bool down);

  /// Whether a key event just read is an entry's, which is spent by this. Events must be given in
  /// the order they were read.
  bool take(std::uint32_t sequence, unsigned keycode, bool down);

 private:
  struct Entry {
    std::uint32_t sequence = 0;
    unsigned keycode = 0;
    bool down = false;
    bool operator==(const Entry&) const = default;
  };
  std::vector<Entry> entries_;  // few: those of events that nobody looks at go with the next
};

}  // namespace vorrin::x11
