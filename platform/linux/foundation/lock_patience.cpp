#include "platform/linux/foundation/lock_patience.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace vorrin {

using namespace std::chrono_literals;

namespace {

constexpr auto longestWait = 1000ms;
// Enough for another's reading or commit, so that a lock that is passed on again costs no write.
constexpr auto waitWhenSpent = 50ms;
constexpr auto longestWaitAmongOthers = 10s;
// Short against the few milliseconds of a commit, so that no one of many writers starves.
constexpr auto moment = 1ms;

}  // namespace

LockPatience::LockPatience(std::filesystem::path file) : file_(std::move(file)) {}

void LockPatience::beginOperation() {
  if (hasFileChanged()) isSpent_ = false;
  begin_ = Clock::now();
  deadline_ = begin_ + (isSpent_ ? waitWhenSpent : longestWait);
}

void LockPatience::endOperation(bool wasLocked) {
  isSpent_ = wasLocked;
}

bool LockPatience::waitOn() {
  const auto now = Clock::now();
  if (hasFileChanged()) {
    deadline_ = std::min(now + longestWait, begin_ + longestWaitAmongOthers);
  }
  if (now >= deadline_) return false;
  std::this_thread::sleep_for(moment);
  return true;
}

bool LockPatience::hasFileChanged() {
  struct stat status {};
  ::stat(file_.c_str(), &status);
  const timespec change = std::exchange(lastChange_, status.st_mtim);
  return change.tv_sec != lastChange_.tv_sec || change.tv_nsec != lastChange_.tv_nsec;
}

}  // namespace vorrin
