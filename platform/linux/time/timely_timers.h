#pragma once

#include <functional>

namespace vorrin {

/// The scheduled timers of the mode `common`: those that must not come late.
void timelyTimerWasScheduled();
void timelyTimerEnded();

/// Has `changed` called with true when such a timer is scheduled while there was none, and with
/// false when the last of them has ended. There is one observer: another takes its place, and an
/// empty one ends it.
void observeTimelyTimers(std::function<void(bool exist)> changed);

}  // namespace vorrin
