#include "platform/event_post.h"

#include "platform/fake/system/fake_system.h"

namespace vorrin {

std::optional<PointerLocation> pointerLocation() {
  return fake::system().pointer;
}

void postEvents(std::span<const SyntheticEvent> events) {
  fake::system().batches.push_back(events.size());
  for (const SyntheticEvent& event : events) {
    fake::system().posted.push_back(event);
    // Injected below the taps: they see it like an event of the user's.
    fake::feed({.type = event.type, .keyCode = event.keyCode, .userData = event.userData});
  }
}

}  // namespace vorrin
