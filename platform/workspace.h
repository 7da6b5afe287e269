#pragma once

#include <functional>
#include <memory>

namespace vorrin {

/// What the workspace tells: each closure runs on the main thread.
struct WorkspaceNotifications {
  std::function<void()> willSleep;               ///< the machine is about to sleep
  std::function<void()> sessionDidResignActive;  ///< the user's session was switched away or locked
};

/// Observes the shared workspace for as long as the value returned (or a copy) lives. Where the
/// system has no such service, nothing is ever told.
[[nodiscard]] std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications);

/// Opens the place where the permission of `isProcessTrusted` is given and taken back. Returns at
/// once; the outcome is not reported.
void openAccessibilitySettings();

}  // namespace vorrin
