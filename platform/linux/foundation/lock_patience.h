#pragma once

#include <sys/stat.h>

#include <chrono>
#include <filesystem>

namespace vorrin {

/// How long the operations on a file wait for a lock that another process holds. They run on the
/// main thread, so a lock that is never released may hold up one of them for a second, and those
/// that follow for a twentieth of one. While others change the file the lock is passing from hand
/// to hand, and it is worth waiting for longer.
class LockPatience {
 public:
  explicit LockPatience(std::filesystem::path file);

  void beginOperation();
  void endOperation(bool wasLocked);

  /// Waits for a moment; false, at once, when the operation has waited for long enough.
  [[nodiscard]] bool waitOn();

 private:
  using Clock = std::chrono::steady_clock;

  /// Whether the file has changed since this was asked last.
  bool hasFileChanged();

  std::filesystem::path file_;
  timespec lastChange_{};
  Clock::time_point begin_;
  Clock::time_point deadline_;
  bool isSpent_ = false;
};

}  // namespace vorrin
