#pragma once

namespace vorrin {

/// Takes the message buses of the session and of the system on which nobody answers out of this
/// process's sight, and out of that of the programs it starts: the libraries would wait 25 seconds
/// for each of them, or start a bus of their own where there is none. Waits up to a second for an
/// answer. Call it before anything uses a bus.
void disregardSilentBuses();

/// Whether somebody answers at the place of the bus. Waits up to a second for a bus that hangs.
bool sessionBusMayAnswer();
bool systemBusMayAnswer();

}  // namespace vorrin
