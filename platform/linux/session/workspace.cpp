#include "platform/workspace.h"

#include "platform/linux/session/login_session.h"

namespace vorrin {

std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications) {
  return std::make_shared<LoginSession>(std::move(notifications));
}

}  // namespace vorrin
