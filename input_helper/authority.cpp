#include "input_helper/authority.h"

#include <string_view>
#include <utility>

#include "input_helper/bus.h"

namespace vorrin::input_helper {
namespace {

const BusObject authority{authorityName, "/org/freedesktop/PolicyKit1/Authority",
                          "org.freedesktop.PolicyKit1.Authority"};

std::optional<Authorization> read(sd_bus_message* reply) {
  int isGiven = 0;
  int wouldTakePassword = 0;
  const char* key = nullptr;
  const char* value = nullptr;
  if (reply == nullptr || sd_bus_message_enter_container(reply, 'r', "bba{ss}") < 0 ||
      sd_bus_message_read(reply, "bb", &isGiven, &wouldTakePassword) < 0 ||
      sd_bus_message_enter_container(reply, 'a', "{ss}") < 0) {
    return std::nullopt;
  }
  Authorization authorization{isGiven != 0, wouldTakePassword != 0, false};
  while (sd_bus_message_read(reply, "{ss}", &key, &value) > 0) {
    if (std::string_view(key) == "polkit.temporary_authorization_id")
      authorization.isTemporary = true;
  }
  return authorization;
}

}  // namespace

void checkAuthorization(sd_bus* bus, const std::string& name, const char* action,
                        const std::string& cancellation,
                        std::function<void(std::optional<Authorization>)> answered) {
  const auto call = makeCall(bus, authority, "CheckAuthorization");
  const bool mayAsk = !cancellation.empty();
  sd_bus_message_append(call.get(), "(sa{sv})sa{ss}us", "system-bus-name", 1, "name", "s",
                        name.c_str(), action, 0, mayAsk ? 1U : 0U, cancellation.c_str());
  callAsync(
      bus, call, [answered = std::move(answered)](sd_bus_message* reply) { answered(read(reply)); },
      mayAsk ? UINT64_MAX : 0);
}

void cancelCheck(sd_bus* bus, const std::string& cancellation) {
  const auto call = makeCall(bus, authority, "CancelCheckAuthorization");
  sd_bus_message_append(call.get(), "s", cancellation.c_str());
  callAsync(bus, call, [](sd_bus_message*) {});
}

void hearAuthority(sd_bus* bus, std::function<void()> changed) {
  hear(bus, "sender='org.freedesktop.PolicyKit1',member='Changed'",
       [changed = std::move(changed)](sd_bus_message*) { changed(); });
}

}  // namespace vorrin::input_helper
