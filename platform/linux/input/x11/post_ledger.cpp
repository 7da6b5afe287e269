#include "platform/linux/input/x11/post_ledger.h"

#include <algorithm>

namespace vorrin::x11 {

namespace {

/// Sequence numbers start again at 0 after the last.
bool isBefore(std::uint32_t sequence, std::uint32_t other) {
  return static_cast<std::int32_t>(sequence - other) < 0;
}

}  // namespace

void PostLedger::add(std::uint32_t sequence, unsigned keycode, bool down) {
  entries_.push_back({sequence, keycode, down});
}

bool PostLedger::take(std::uint32_t sequence, unsigned keycode, bool down) {
  // Entries of earlier requests stay behind when the server made no event of them, or nobody looked
  // at it.
  const auto first = std::ranges::find_if(
      entries_, [=](const Entry& entry) { return !isBefore(entry.sequence, sequence); });
  entries_.erase(entries_.begin(), first);
  if (entries_.empty() || entries_.front() != Entry{sequence, keycode, down}) return false;
  entries_.erase(entries_.begin());
  return true;
}

}  // namespace vorrin::x11
