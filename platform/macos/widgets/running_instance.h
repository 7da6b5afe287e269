#pragma once

#include <functional>
#include <memory>

namespace vorrin {

/// Asks the Vorrin that runs in the user's session already, if there is one, to show its window.
/// The system itself starts an application only once, but not when its executable is called by its
/// path. False for a program without a bundle, and when nobody else has finished launching.
bool reopenRunningInstance();

/// Calls `asked` on the main thread whenever another start asks this one to show its window, for
/// as long as the value returned lives.
[[nodiscard]] std::shared_ptr<void> observeReopening(std::function<void()> asked);

}  // namespace vorrin
