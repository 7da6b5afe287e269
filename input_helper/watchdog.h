#pragma once

namespace vorrin::input_helper {

/// How long this process may be silent before it is ended, and the keyboards with it are free.
inline constexpr unsigned watchdogSeconds = 3;

/// Tells whoever watches that the process is at work. The kernel ends it when it hangs, and so does
/// systemd, which can also end it while it is stopped.
void beat();

}  // namespace vorrin::input_helper
