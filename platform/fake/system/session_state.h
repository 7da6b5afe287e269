#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/workspace.h"

namespace vorrin::fake {

/// Who observes the session of the fake system, and whether the program is the active one.
struct SessionState {
  bool active = false;
  std::function<void()> activityChanged;
  std::vector<std::weak_ptr<WorkspaceNotifications>> observers;
};

SessionState& session();

}  // namespace vorrin::fake
