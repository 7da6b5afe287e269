#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "quartz_stand_in.h"

// What the stand-in's functions share: the objects they hand out, and the record of their calls.

// Core Foundation's types, as far as the functions need them. An object counts its references; the
// ones that the system keeps to itself are marked by the fields that refer to them.

struct StandInString {
  std::string text;
};
struct StandInAllocator {};
struct StandInBoolean {};
struct StandInRunLoop {};
struct StandInCenter {};

struct Counted {
  virtual ~Counted() = default;
  int references = 1;
};

struct StandInDictionary : Counted {
  std::map<const void*, const void*> entries;
};

struct StandInPort : Counted {
  std::string name;  // in the record of calls
  CGEventTapCallBack callback = nullptr;
  void* userInfo = nullptr;
  CFMachPortInvalidationCallBack invalidated = nullptr;
  bool enabled = true;  // as the documentation says of a new tap
  bool valid = true;
  bool attached = false;
};

struct StandInSource : Counted {
  CFMachPortRef port = nullptr;
};

struct StandInTimer : Counted {
  CFRunLoopTimerCallBack callback = nullptr;
  void* info = nullptr;
  bool scheduled = false;
};

struct StandInEvent : Counted {
  QuartzStandIn::Event fields;
};

namespace stand_in {

struct Observation {
  CFNotificationCallback callback = nullptr;
  std::string name;
};

/// What belongs to the `QuartzStandIn` that lives.
struct State {
  QuartzStandIn* standIn = nullptr;
  std::vector<std::unique_ptr<Counted>> objects;
  std::multimap<const void*, Observation> observers;
  std::multiset<std::string> activities;
  std::size_t callsTaken = 0;
};

State& state();
QuartzStandIn& current();

/// The tap that was made at the head and has not ended; null without one.
CFMachPortRef tap();

/// The timers that the run loop serves.
std::vector<CFRunLoopTimerRef> timers();

/// A string that lives as long as the process, the same object for the same text.
CFStringRef constantString(const std::string& text);

/// A new object, with one reference that belongs to the caller.
template <typename Object>
Object* made() {
  auto owned = std::make_unique<Object>();
  Object* object = owned.get();
  state().objects.push_back(std::move(owned));
  return object;
}

template <typename Argument>
std::string shown(const Argument& argument) {
  std::ostringstream text;
  if constexpr (std::is_same_v<Argument, CFStringRef>) {
    text << argument->text;
  } else if constexpr (std::is_null_pointer_v<Argument>) {
    text << "null";
  } else if constexpr (std::is_pointer_v<Argument>) {
    text << (argument == nullptr ? "null" : "object");
  } else if constexpr (std::is_same_v<Argument, CGPoint>) {
    text << argument.x << " " << argument.y;
  } else if constexpr (std::is_same_v<Argument, bool>) {
    text << (argument ? "true" : "false");
  } else if constexpr (std::is_enum_v<Argument>) {
    text << static_cast<std::underlying_type_t<Argument>>(argument);
  } else {
    text << argument;
  }
  return text.str();
}

template <typename... Arguments>
void record(const std::string& name, const Arguments&... arguments) {
  std::string call;
  ((call += (call.empty() ? "" : ", ") + shown(arguments)), ...);
  current().calls.push_back(name + "(" + call + ")");
}

}  // namespace stand_in
