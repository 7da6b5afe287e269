#include "platform/linux/foundation/lock_patience.h"

#include <thread>

namespace vorrin {

using namespace std::chrono_literals;

void LockPatience::beginOperation() {
  deadline_ = std::chrono::steady_clock::now() + (spent_ ? 0ms : 1000ms);
}

void LockPatience::endOperation(bool wasLocked) {
  spent_ = wasLocked;
}

bool LockPatience::waitOn() {
  if (std::chrono::steady_clock::now() >= deadline_) return false;
  // Short against the few milliseconds of a commit, so that no one of many writers starves.
  std::this_thread::sleep_for(1ms);
  return true;
}

}  // namespace vorrin
