#pragma once

#include "ui/app.h"

namespace vorrin {

/// The interface self-check behind "--ui-test": drives the built window's real controls and
/// handlers in a private settings domain, measures every control, writes "ui-preview.png" into the
/// working directory, prints three PASS lines and ends the process with status 0. The first check
/// that does not hold ends it abnormally with "Precondition failed", the check and its place. Posts
/// no event.
[[noreturn]] void runInterfaceSelfCheck(App& app);

}  // namespace vorrin
