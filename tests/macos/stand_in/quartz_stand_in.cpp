#include "quartz_stand_in.h"

#include <algorithm>

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

using stand_in::constantString;
using stand_in::State;
using stand_in::state;
using stand_in::tap;
using stand_in::timers;

QuartzStandIn::QuartzStandIn() {
  static double begin = 0;
  now = begin += 1000;
  state() = State{.standIn = this, .objects = {}, .observers = {}, .activities = {}};
}

QuartzStandIn::~QuartzStandIn() {
  state() = State{};
}

std::vector<std::string> QuartzStandIn::takeCalls() {
  const auto first = calls.begin() + static_cast<std::ptrdiff_t>(state().callsTaken);
  state().callsTaken = calls.size();
  return {first, calls.end()};
}

bool QuartzStandIn::deliver(const Event& event) {
  CFMachPortRef port = tap();
  if (port == nullptr || !port->enabled || !port->attached) return true;
  StandInEvent delivered;
  delivered.fields = event;
  return port->callback(nullptr, static_cast<CGEventType>(event.type), &delivered,
                        port->userInfo) == &delivered;
}

bool QuartzStandIn::deliverNotice(std::uint32_t type) {
  StandInEvent delivered;
  CFMachPortRef port = tap();
  return port->callback(nullptr, static_cast<CGEventType>(type), &delivered, port->userInfo) ==
         &delivered;
}

void QuartzStandIn::switchTapOff() {
  tap()->enabled = false;
}

bool QuartzStandIn::disableTap(std::uint32_t notice) {
  switchTapOff();
  return deliverNotice(notice);
}

void QuartzStandIn::invalidatePort() {
  CFMachPortRef port = tap();
  port->valid = false;
  if (port->invalidated != nullptr) port->invalidated(port, nullptr);
}

void QuartzStandIn::fireTimers(double seconds) {
  now += seconds;
  for (CFRunLoopTimerRef timer : timers()) timer->callback(timer, timer->info);
}

void QuartzStandIn::notify(const std::string& name) {
  const auto observers = state().observers;
  for (const auto& [observer, observation] : observers) {
    if (observation.name != name) continue;
    observation.callback(CFNotificationCenterGetDistributedCenter(), const_cast<void*>(observer),
                         constantString(name), nullptr, nullptr);
  }
}

std::optional<bool> QuartzStandIn::tapEnabled() const {
  CFMachPortRef port = tap();
  if (port == nullptr) return std::nullopt;
  return port->enabled;
}

std::size_t QuartzStandIn::scheduledTimers() const {
  return timers().size();
}

std::multiset<std::string> QuartzStandIn::activities() const {
  return state().activities;
}

std::size_t QuartzStandIn::liveObjects() const {
  const auto& objects = state().objects;
  return static_cast<std::size_t>(std::count_if(
      objects.begin(), objects.end(), [](const auto& object) { return object->references > 0; }));
}
