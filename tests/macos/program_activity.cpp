#include "program_activity.h"

#include "platform/application_activity.h"

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

}  // namespace vorrin
