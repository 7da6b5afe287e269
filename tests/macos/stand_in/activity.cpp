#include "platform/macos/time/activity.h"

#include "objects.h"

namespace vorrin {

std::shared_ptr<void> beginActivity(Activity activity) {
  const std::string name = activity == Activity::listening ? "listening" : "repeating";
  stand_in::state().activities.insert(name);
  return {nullptr, [name](void*) {
            auto& activities = stand_in::state().activities;
            if (const auto found = activities.find(name); found != activities.end()) {
              activities.erase(found);
            }
          }};
}

}  // namespace vorrin
