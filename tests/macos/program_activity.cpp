#include "program_activity.h"

#include "platform/application_activity.h"
#include "platform/workspace.h"

namespace {
bool programIsActive = false;
bool userIsAtSession = true;
}  // namespace

void setProgramActive(bool active) {
  programIsActive = active;
}

void setSessionActive(bool active) {
  userIsAtSession = active;
}

namespace vorrin {

bool applicationIsActive() {
  return programIsActive;
}

bool sessionIsActive() {
  return userIsAtSession;
}

}  // namespace vorrin
