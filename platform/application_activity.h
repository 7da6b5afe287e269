#pragma once

#include <functional>

namespace vorrin {

/// Whether a window of this program has the user's keyboard now (`isActive` of the shared
/// application).
bool applicationIsActive();

/// Has `changed` called on the main thread after every change of `applicationIsActive`. One
/// observer; a second call replaces the first, an empty function removes it.
void observeApplicationActivity(std::function<void()> changed);

}  // namespace vorrin
