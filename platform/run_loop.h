#pragma once

#include "platform/timer.h"

namespace vorrin {

/// When the run loop serves a timer. `standard` may pause while a menu or a modal panel tracks
/// events; `common` never does.
enum class RunLoopMode { standard, common };

/// The main thread's run loop: timers, input services, controls and notifications all run on it.
class RunLoop {
 public:
  static RunLoop main();

  /// Schedules `timer`; its first firing comes one interval from now. The run loop keeps a
  /// scheduled timer alive until it is invalidated. Adding a timer twice, or an invalidated one,
  /// does nothing.
  void add(const Timer& timer, RunLoopMode mode) const;

  /// Serves everything that becomes due during the next `seconds`, then returns. For programs that
  /// do not run an `Application`.
  void runFor(double seconds) const;

 private:
  RunLoop() = default;
};

}  // namespace vorrin
