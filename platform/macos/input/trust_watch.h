#pragma once

#include <functional>

#include "platform/macos/input/core_foundation_handle.h"

namespace vorrin {

/// Calls `check` on the main thread ten times a second, in the common run-loop modes: nothing tells
/// reliably that the Accessibility grant was taken back.
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
