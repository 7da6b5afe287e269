#include "platform/application_activity.h"

#include <utility>

#include "platform/fake/system/fake_system.h"
#include "platform/fake/system/session_state.h"

namespace vorrin {

bool applicationIsActive() {
  return fake::session().active;
}

void observeApplicationActivity(std::function<void()> changed) {
  fake::session().activityChanged = std::move(changed);
}

namespace fake {

void setApplicationActive(bool active) {
  if (std::exchange(session().active, active) == active) return;
  // A copy, for the observer may set another one.
  const auto changed = session().activityChanged;
  if (changed) changed();
}

}  // namespace fake
}  // namespace vorrin
