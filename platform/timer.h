#pragma once

#include <functional>
#include <memory>

namespace vorrin {

/// A repeating timer of the main run loop. Copies refer to the same timer. A timer fires only after
/// it has been added to the run loop (`RunLoop::add`), first one interval after that moment, then
/// at whole multiples of the interval from it. A timer that is late fires once and keeps its grid:
/// it never catches up in a burst.
class Timer {
 public:
  /// `interval` is in seconds, above 0, exact to the nanosecond; `block` runs on the main thread at
  /// every firing and is released when the timer is invalidated or its last copy goes away.
  Timer(double interval, std::function<void()> block);

  /// Ends the timer for good. No firing follows, not even one that was already due. Invalidating
  /// twice, or from within the block, is allowed.
  void invalidate() const;

  /// False once `invalidate` was called.
  [[nodiscard]] bool isValid() const;

 private:
  friend class RunLoop;
  struct Native;
  std::shared_ptr<Native> native_;
};

}  // namespace vorrin
