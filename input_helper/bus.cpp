#include "input_helper/bus.h"

#include <tuple>
#include <utility>

namespace vorrin::input_helper {
namespace {

using Handler = std::function<void(sd_bus_message*)>;

/// Has the slot own its handler, and the bus own the slot.
void keep(sd_bus_slot* slot) {
  sd_bus_slot_set_destroy_callback(slot,
                                   [](void* handler) { delete static_cast<Handler*>(handler); });
  sd_bus_slot_set_floating(slot, 1);
}

int handle(sd_bus_message* message, void* handler, sd_bus_error*) {
  const bool isError = sd_bus_message_is_method_error(message, nullptr) != 0;
  (*static_cast<Handler*>(handler))(isError ? nullptr : message);
  return 0;
}

}  // namespace

Message makeCall(sd_bus* bus, const BusObject& object, const char* method) {
  sd_bus_message* call = nullptr;
  // Fails for a path that is none, an empty one for instance.
  sd_bus_message_new_method_call(bus, &call, object.service, object.path.c_str(), object.interface,
                                 method);
  return Message(call);
}

void callAsync(sd_bus* bus, const Message& call, Handler answered, std::uint64_t limit) {
  auto handler = std::make_unique<Handler>(std::move(answered));
  sd_bus_slot* slot = nullptr;
  if (!call || sd_bus_call_async(bus, &slot, call.get(), handle, handler.get(), limit) < 0) {
    (*handler)(nullptr);
    return;
  }
  std::ignore = handler.release();
  keep(slot);
}

void hear(sd_bus* bus, const std::string& rule, Handler heard) {
  auto handler = std::make_unique<Handler>(std::move(heard));
  sd_bus_slot* slot = nullptr;
  // Without a word about it the bus is closed when it does not take the rule.
  if (sd_bus_add_match_async(bus, &slot, ("type='signal'," + rule).c_str(), handle, nullptr,
                             handler.get()) < 0) {
    return;
  }
  std::ignore = handler.release();
  keep(slot);
}

void hearOwners(sd_bus* bus, std::function<void(const std::string& name)> changed) {
  hear(bus, "sender='org.freedesktop.DBus',member='NameOwnerChanged'",
       [changed = std::move(changed)](sd_bus_message* signal) {
         const char* name = nullptr;
         if (sd_bus_message_read(signal, "s", &name) > 0) changed(name);
       });
}

bool readDictionary(sd_bus_message* message,
                    const std::function<bool(const std::string& key)>& take) {
  if (sd_bus_message_enter_container(message, 'a', "{sv}") < 0) return false;
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* key = nullptr;
    if (sd_bus_message_read(message, "s", &key) < 0) return false;
    if (!take(key) && sd_bus_message_skip(message, "v") < 0) return false;
    if (sd_bus_message_exit_container(message) < 0) return false;
  }
  return sd_bus_message_exit_container(message) >= 0;
}

}  // namespace vorrin::input_helper
