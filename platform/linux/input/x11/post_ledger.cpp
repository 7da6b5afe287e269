#include "platform/linux/input/x11/post_ledger.h"

namespace vorrin::x11 {

void PostLedger::add(unsigned long serial, unsigned keycode, bool down, Post post) {
  if (count_ == capacity) {
    first_ = (first_ + 1) % capacity;
    --count_;
  }
  entries_[(first_ + count_) % capacity] = {serial, keycode, down, post};
  ++count_;
}

std::optional<Post> PostLedger::take(unsigned long serial, unsigned keycode, bool down) {
  // Entries of earlier requests stay behind when the server made no event of them, for instance of
  // the release of a key that was not down.
  while (count_ > 0 && entries_[first_].serial < serial) {
    first_ = (first_ + 1) % capacity;
    --count_;
  }
  if (count_ == 0) return std::nullopt;
  const Entry& oldest = entries_[first_];
  if (oldest.serial != serial || oldest.keycode != keycode || oldest.down != down) {
    return std::nullopt;
  }
  const Post post = oldest.post;
  first_ = (first_ + 1) % capacity;
  --count_;
  return post;
}

}  // namespace vorrin::x11
