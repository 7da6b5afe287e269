#pragma once

namespace vorrin {

/// Whether this process may listen to the keyboard and inject input. Never asks the user anything;
/// cheap enough for every tick of a macro.
bool isProcessTrusted();

/// The same, but when the answer is no the system shows its own request for the permission.
bool isProcessTrustedWithPrompt();

}  // namespace vorrin
