#pragma once

namespace vorrin {

/// From now on the kernel runs the main thread in real time while a timer of the mode `common` is
/// scheduled: on a machine that computes something else on every processor, a thread with ordinary
/// priority comes too late for one click in five at 1 ms. By this process's own right where it has
/// one, otherwise by RealtimeKit's, which gives it to users in front of the machine. Refused,
/// everything goes on as it is, silently. On the main thread.
void useRealTime();

/// A timer of that mode was scheduled, or has ended. Counted also while nobody uses real time.
void realTimeTimerWasScheduled();
void realTimeTimerEnded();

/// Has the kernel run the calling thread in real time, by this process's own right; false where it
/// has none, as is usual for a desktop's programs. Bounds how long a thread of this process may
/// compute so without waiting for anything: after 100 ms it goes back to ordinary scheduling by
/// itself; after 200 ms the kernel would end the process.
[[nodiscard]] bool enterRealTime();

/// Back to ordinary scheduling. Does nothing for a thread that is scheduled so already. Safe in a
/// signal handler.
void leaveRealTime();

}  // namespace vorrin
