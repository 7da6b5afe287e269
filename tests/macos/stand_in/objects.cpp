#include "objects.h"

namespace stand_in {

State& state() {
  static State state;
  return state;
}

QuartzStandIn& current() {
  return *state().standIn;
}

CFMachPortRef tap() {
  for (const auto& object : state().objects) {
    auto* port = dynamic_cast<CFMachPortRef>(object.get());
    if (port != nullptr && port->references > 0 && port->valid && port->name == "tap") return port;
  }
  return nullptr;
}

std::vector<CFRunLoopTimerRef> timers() {
  std::vector<CFRunLoopTimerRef> scheduled;
  for (const auto& object : state().objects) {
    auto* timer = dynamic_cast<CFRunLoopTimerRef>(object.get());
    if (timer != nullptr && timer->scheduled) scheduled.push_back(timer);
  }
  return scheduled;
}

CFStringRef constantString(const std::string& text) {
  static std::map<std::string, StandInString> strings;
  return &strings.emplace(text, StandInString{text}).first->second;
}

}  // namespace stand_in
