#include "platform/event_post.h"

#include <algorithm>
#include <array>

#include "platform/macos/input/core_foundation_handle.h"

namespace vorrin {

namespace {

using EventHandle = CoreFoundationHandle<CGEventRef>;

EventHandle madeEvent(const SyntheticEvent& event) {
  switch (event.type) {
    case EventType::leftMouseDown:
    case EventType::leftMouseUp:
      return EventHandle(CGEventCreateMouseEvent(nullptr, static_cast<CGEventType>(event.type),
                                                 CGPoint{event.location.x, event.location.y},
                                                 kCGMouseButtonLeft));
    case EventType::keyDown:
    case EventType::keyUp:
      return EventHandle(
          CGEventCreateKeyboardEvent(nullptr, event.keyCode, event.type == EventType::keyDown));
    case EventType::tapDisabledByTimeout:
    case EventType::tapDisabledByUserInput:
      break;  // notices of the system, which nobody posts
  }
  return nullptr;
}

// A press and its release are both made before the first is posted: a failure in between must not
// leave a key down for longer than it takes to post the rest.
constexpr std::size_t batchSize = 2;

void postBatch(std::span<const SyntheticEvent> events) {
  std::array<EventHandle, batchSize> made;
  std::transform(events.begin(), events.end(), made.begin(), &madeEvent);
  for (std::size_t i = 0; i < events.size(); ++i) {
    if (!made[i]) continue;
    CGEventSetIntegerValueField(made[i].get(), kCGEventSourceUserData, events[i].userData);
    CGEventPost(kCGHIDEventTap, made[i].get());
  }
}

}  // namespace

std::optional<PointerLocation> pointerLocation() {
  const EventHandle event(CGEventCreate(nullptr));
  if (!event) return std::nullopt;
  const CGPoint location = CGEventGetLocation(event.get());
  return PointerLocation{location.x, location.y};
}

void postEvents(std::span<const SyntheticEvent> events) {
  while (!events.empty()) {
    const std::size_t count = std::min(batchSize, events.size());
    postBatch(events.first(count));
    events = events.subspan(count);
  }
}

}  // namespace vorrin
