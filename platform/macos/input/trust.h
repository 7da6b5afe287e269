#pragma once

namespace vorrin {

// What `AXIsProcessTrusted` says is cached in the process: it is reported to go on saying yes after
// the program's row was deleted from the list of granted programs, and no after it was added, until
// the program is started anew. The fact is whether the window server gives the process a filtering
// tap. What one showed holds until `AXIsProcessTrusted` changes its answer or the next one.

/// Makes a filtering tap at the end of the event path, takes it away at once, and says whether
/// there was one. Not to be asked without a reason: each one refused leaks a Mach port, and it can
/// bring the program back into the list.
bool confirmTrust();

/// Has `isProcessTrusted` look by a tap whenever the list of granted programs is edited: at its
/// next call and again a second later, for the notice of it can come before the change counts.
/// Calling this twice is calling it once.
void watchGrants();

/// Notes an answer of `AXIsProcessTrusted`; whether the process is trusted.
bool noteTrust(bool told);

struct Trust {
  bool told = false;     ///< what `AXIsProcessTrusted` said last
  bool trusted = false;  ///< by that, or by what a tap showed since
};
Trust knownTrust();

}  // namespace vorrin
