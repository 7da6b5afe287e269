#pragma once

namespace vorrin {

/// Whether this process may listen to the keyboard and inject input. Only answers: nothing is
/// started and nobody asked, so it is cheap enough for every tick of a macro. True where the system
/// asks no permission.
bool isProcessTrusted();

/// The same, but when the answer is no the system shows its own request for the permission.
bool isProcessTrustedWithPrompt();

}  // namespace vorrin
