#include "platform/application_activity.h"
#include "platform/workspace.h"

namespace vorrin {

// In these tests the user is at the session, and at another program's window.

bool applicationIsActive() {
  return false;
}

bool sessionIsActive() {
  return true;
}

}  // namespace vorrin
