#pragma once

#include <functional>
#include <memory>

namespace vorrin {

/// What the workspace tells: each closure runs on the main thread.
struct WorkspaceNotifications {
  std::function<void()> willSleep;                 ///< the machine is about to sleep
  std::function<void()> sessionDidResignActive;    ///< the session was switched away or locked
  std::function<void()> sessionActivityDidChange;  ///< `sessionIsActive` has another answer now
};

/// Observes the shared workspace for as long as the value returned (or a copy) lives. Where the
/// system has no such service, nothing is ever told.
[[nodiscard]] std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications);

/// Whether the user is at this session, as far as the system has told. While it is switched away or
/// locked, what is typed may be a password, and while a screen saver hides it, nobody sees what
/// happens: no key may be swallowed then and nothing posted. Known while somebody observes the
/// workspace; true otherwise.
bool sessionIsActive();

/// Opens the place where the permission of `isProcessTrusted` is given and taken back. Returns at
/// once; the outcome is not reported.
void openAccessibilitySettings();

}  // namespace vorrin
