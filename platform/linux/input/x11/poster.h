#pragma once

#include <bitset>
#include <cstdint>

#include "platform/linux/input/x11/connection.h"
#include "platform/linux/input/x11/post_ledger.h"

namespace vorrin::x11 {

/// Makes key events through XTEST, knows them again when they come back, and leaves no key down
/// when it goes.
class Poster {
 public:
  explicit Poster(Connection& connection) : connection_(connection) {}
  ~Poster();
  Poster(const Poster&) = delete;
  Poster& operator=(const Poster&) = delete;

  /// Queues one event; `flush` hands it to the server. No round trip, no allocation.
  void key(KeyCode keycode, bool down, Post post);
  void flush();

  [[nodiscard]] PostLedger& ledger() { return ledger_; }

 private:
  Connection& connection_;
  PostLedger ledger_;
  std::bitset<256> keysDown_;
};

}  // namespace vorrin::x11
