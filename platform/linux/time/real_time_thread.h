#pragma once

namespace vorrin {

/// The priority among real-time threads: the lowest, for none of the system's own may wait for
/// this.
constexpr unsigned realTimePriority = 1;

/// How long a thread that runs in real time may compute without waiting for anything, in
/// microseconds. At the first bound it goes back to the ordinary scheduling by itself and stays
/// alive; the second, which the kernel ends the process at, is what the system's giver of real time
/// asks for at most.
constexpr unsigned long realTimeBound = 100'000;
constexpr unsigned long realTimeEnd = 200'000;

/// Puts the bounds on the calling thread's process, for `realTimeBound` anew at each call. False
/// where the system refuses; real time must not be asked for then.
[[nodiscard]] bool boundRealTime();

/// Has the kernel run the calling thread in real time, by this process's own right. False where it
/// has none, as is usual for a desktop's programs. Call `boundRealTime` first.
[[nodiscard]] bool enterRealTime();

/// Back to the ordinary scheduling. Does nothing for a thread that is scheduled so already. Safe in
/// a signal handler.
void leaveRealTime();

}  // namespace vorrin
