#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace vorrin::input_helper {

struct MessageUnref {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, MessageUnref>;

/// Who is asked over the bus.
struct BusObject {
  const char* service;
  std::string path;
  const char* interface;
};

/// A call to be filled with arguments; null when the path is none.
Message makeCall(sd_bus* bus, const BusObject& object, const char* method);

/// Sends the call without waiting. `answered` gets the reply, or null when there is none.
/// `limit`: how long the answer may take, in microseconds; 0 is what is usual on the bus.
void callAsync(sd_bus* bus, const Message& call,
               std::function<void(sd_bus_message* reply)> answered, std::uint64_t limit = 0);

/// Hears the signals of a match rule for as long as the bus lasts.
void hear(sd_bus* bus, const std::string& rule, std::function<void(sd_bus_message*)> heard);

/// Hears of each name on the bus that changes hands, or goes.
void hearOwners(sd_bus* bus, std::function<void(const std::string& name)> changed);

/// Reads a dictionary a{sv}. `take` gets each key with the message at its value, and reads that or
/// leaves it. False when it is no such dictionary.
[[nodiscard]] bool readDictionary(sd_bus_message* message,
                                  const std::function<bool(const std::string& key)>& take);

}  // namespace vorrin::input_helper
