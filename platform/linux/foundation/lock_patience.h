#pragma once

#include <chrono>

namespace vorrin {

/// How long the operations on one domain wait for a lock that another process holds. They run on
/// the main thread, so a lock that is never released may hold up only one of them: after it those
/// that follow try without waiting, until one succeeds.
class LockPatience {
 public:
  void beginOperation();
  void endOperation(bool wasLocked);

  /// Waits for a moment; false, at once, when the operation has waited for long enough.
  [[nodiscard]] bool waitOn();

 private:
  std::chrono::steady_clock::time_point deadline_;
  bool spent_ = false;
};

}  // namespace vorrin
