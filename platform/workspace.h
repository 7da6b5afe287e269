#pragma once

#include <functional>
#include <memory>

namespace vorrin {

/// What the workspace tells: each closure runs on the main thread.
struct WorkspaceNotifications {
  std::function<void()> willSleep;               ///< the machine is about to sleep
  std::function<void()> sessionDidResignActive;  ///< the user's session was switched away or locked
  std::function<void()> sessionDidBecomeActive;  ///< the user is back at it
};

/// Observes the shared workspace for as long as the value returned (or a copy) lives. Where the
/// system has no such service, nothing is ever told.
[[nodiscard]] std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications);

/// Whether the user is at this session. While it is switched away or locked, what is typed may be a
/// password: no key may be swallowed then and nothing posted. Known while somebody observes the
/// workspace; true otherwise. Where the system does not tell of every lock screen it is looked at:
/// the answer is at most 50 ms old, and the caller waits for the system only when the last one is
/// older than that.
bool sessionIsActive();

/// The same as far as it was told or seen already, for what happens all the time.
bool sessionWasActive();

/// Opens the place where the permission of `isProcessTrusted` is given and taken back. Returns at
/// once; the outcome is not reported.
void openAccessibilitySettings();

}  // namespace vorrin
