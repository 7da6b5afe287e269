#pragma once

#include <functional>

#include "platform/macos/input/core_foundation_handle.h"

namespace vorrin {

/// Calls `check` on the main thread whenever the Accessibility grant may have changed: ten times a
/// second in the common run-loop modes, and at once on the notice that the system sends round when
/// the list of granted programs is edited. That notice ("com.apple.accessibility.api") is not
/// documented, and it can come before `AXIsProcessTrusted` changes its answer; the timer alone
/// would do, but the system stretches the timers of a program in the background.
class TrustWatch {
 public:
  explicit TrustWatch(std::function<void()> check);
  ~TrustWatch();
  TrustWatch(const TrustWatch&) = delete;
  TrustWatch& operator=(const TrustWatch&) = delete;

 private:
  std::function<void()> check_;
  CoreFoundationHandle<CFRunLoopTimerRef> timer_;
};

}  // namespace vorrin
