#pragma once

#include <cstddef>

namespace vorrin::fake {

/// The clock that timers and the run loop go by when this library is linked. It stands still but
/// for these calls. Times are in seconds, counted in whole nanoseconds.

/// Lets `seconds` pass, serving every timer at the very moment it is due; timers that are overdue
/// are served first. Does not allocate.
void advance(double seconds);

/// Lets `seconds` pass with the main thread busy: nothing is served, so what comes due meanwhile is
/// late at the next `advance`. May be called from within a timer's block.
void stall(double seconds);

/// Seconds since `resetTime`.
double now();

/// While true a menu or a modal panel tracks events: timers of the standard mode wait.
void setTracking(bool tracking);

/// Number of timers that the run loop keeps.
std::size_t scheduledTimers();

/// Drops every scheduled timer and sets the clock back to 0.
void resetTime();

}  // namespace vorrin::fake
