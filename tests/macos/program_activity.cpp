#include "program_activity.h"

#include "platform/application_activity.h"
#include "platform/workspace.h"

namespace {
bool programIsActive = false;
}  // namespace

void setProgramActive(bool active) {
  programIsActive = active;
}

namespace vorrin {

bool applicationIsActive() {
  return programIsActive;
}

bool sessionIsActive() {
  return true;
}

}  // namespace vorrin
