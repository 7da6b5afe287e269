#pragma once

namespace vorrin {

/// Takes the session bus and the system bus, if it hangs, out of this process's sight, and out of
/// that of the programs it starts: the libraries would wait for its answer without end. Waits for
/// each up to a second. Call it before anything uses a bus.
void leaveOutUnresponsiveBuses();

}  // namespace vorrin
