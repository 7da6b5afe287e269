#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/workspace.h"

namespace vorrin::fake {

/// Who observes the session of the fake system, whether the program is the active one and whether
/// the user is there.
struct SessionState {
  bool active = false;
  bool userIsPresent = true;
  std::function<void()> activityChanged;
  std::vector<std::weak_ptr<WorkspaceNotifications>> observers;
};

SessionState& session();

}  // namespace vorrin::fake
