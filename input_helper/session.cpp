#include "input_helper/session.h"

#include <cstdint>
#include <memory>
#include <tuple>
#include <utility>

#include "input_helper/bus.h"
#include "input_helper/event_device.h"
#include "input_helper/watchdog.h"

namespace vorrin::input_helper {
namespace {

constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
const BusObject loginManager{loginManagerName, "/org/freedesktop/login1",
                             "org.freedesktop.login1.Manager"};

struct CredentialsUnref {
  void operator()(sd_bus_creds* credentials) const { sd_bus_creds_unref(credentials); }
};
using Credentials = std::unique_ptr<sd_bus_creds, CredentialsUnref>;

/// The answer, if one comes soon.
Message ask(sd_bus* bus, const Message& call) {
  constexpr std::uint64_t answerMicroseconds = 1'000'000;
  sd_bus_message* answer = nullptr;
  beat();
  if (call) sd_bus_call(bus, call.get(), answerMicroseconds, nullptr, &answer);
  return Message(answer);
}

Message askManager(sd_bus* bus, const char* method, std::uint32_t process) {
  const auto call = makeCall(bus, loginManager, method);
  sd_bus_message_append(call.get(), "u", process);
  return ask(bus, call);
}

std::string pathIn(const Message& reply) {
  const char* path = nullptr;
  return reply && sd_bus_message_read(reply.get(), "o", &path) > 0 ? path : std::string();
}

bool readFlag(sd_bus_message* message, bool& flag) {
  int value = 0;
  if (sd_bus_message_read(message, "v", "b", &value) < 0) return false;
  flag = value != 0;
  return true;
}

bool readText(sd_bus_message* message, std::string& text) {
  const char* value = nullptr;
  if (sd_bus_message_read(message, "v", "s", &value) < 0) return false;
  text = value;
  return true;
}

/// What lies in a variant that holds a structure of `type` and a path that nobody needs.
template <class Value>
bool readFirst(sd_bus_message* message, const char* type, Value& value) {
  const char* path = nullptr;
  return sd_bus_message_read(message, "v", type, &value, &path) >= 0;
}

/// The name of the session on the bus; empty when the process belongs to none of any user's.
std::string sessionOf(sd_bus* bus, std::uint32_t process) {
  if (auto path = pathIn(askManager(bus, "GetSessionByPID", process)); !path.empty()) return path;
  const auto user = pathIn(askManager(bus, "GetUserByPID", process));
  const auto call = makeCall(bus, {loginManagerName, user, propertiesInterface}, "Get");
  if (call) sd_bus_message_append(call.get(), "ss", "org.freedesktop.login1.User", "Display");
  const auto reply = ask(bus, call);
  const char* id = nullptr;
  const char* path = nullptr;
  const bool isRead = reply && sd_bus_message_read(reply.get(), "v", "(so)", &id, &path) > 0;
  return isRead && *id != 0 ? path : std::string();
}

std::optional<Session> readSession(sd_bus* bus, const std::string& path) {
  const auto call = makeCall(bus, {loginManagerName, path, propertiesInterface}, "GetAll");
  if (call) sd_bus_message_append(call.get(), "s", sessionInterface);
  const auto reply = ask(bus, call);
  Session session;
  session.path = path;
  return reply && session.read(reply.get()) ? std::optional(session) : std::nullopt;
}

}  // namespace

bool Session::read(sd_bus_message* properties) {
  return readDictionary(properties, [&](const std::string& key) {
    const char* text = nullptr;
    if (key == "Active") return readFlag(properties, isInFront);
    if (key == "Remote") return readFlag(properties, isRemote);
    if (key == "Name") return readText(properties, userName);
    if (key == "Class") return readText(properties, sessionClass);
    if (key == "User") return readFirst(properties, "(uo)", user);
    if (key == "LockedHint") {
      wasAskedToLock = false;
      return readFlag(properties, isLocked);
    }
    if (key != "Seat" || !readFirst(properties, "(so)", text)) return false;
    seat = text;
    return true;
  });
}

bool Session::isAtFirstSeat() const {
  return !isRemote && seat == firstSeat && sessionClass == "user";
}

std::optional<Caller> findCaller(sd_bus_message* message) {
  auto* const bus = sd_bus_message_get_bus(message);
  sd_bus_creds* found = nullptr;
  sd_bus_query_sender_creds(message, SD_BUS_CREDS_EUID | SD_BUS_CREDS_PID, &found);
  const Credentials credentials(found);
  Caller caller{sd_bus_message_get_sender(message), 0, std::nullopt};
  pid_t process = 0;
  if (!credentials || sd_bus_creds_get_euid(found, &caller.user) < 0 ||
      sd_bus_creds_get_pid(found, &process) < 0) {
    return std::nullopt;
  }
  caller.session = readSession(bus, sessionOf(bus, static_cast<std::uint32_t>(process)));
  // The number of the process may be another's by now, but not its user's.
  if (caller.session && caller.session->user != caller.user) caller.session.reset();
  return caller;
}

void hearSessions(sd_bus* bus, const ChangeSession& changed, std::function<void(bool)> sleep) {
  const std::string from = std::string("sender='") + loginManagerName + "',";
  hear(bus, from + "interface='" + propertiesInterface + "',member='PropertiesChanged'",
       [changed](sd_bus_message* signal) {
         changed(sd_bus_message_get_path(signal), [=](Session& session) {
           const char* interface = nullptr;
           sd_bus_message_rewind(signal, 1);
           if (sd_bus_message_read(signal, "s", &interface) < 0 ||
               std::string(interface) != sessionInterface) {
             return;
           }
           if (!session.read(signal)) session.isInFront = false;
         });
       });
  hear(bus, from + "interface='" + sessionInterface + "'", [changed](sd_bus_message* signal) {
    const bool isLock = sd_bus_message_is_signal(signal, nullptr, "Lock") > 0;
    if (!isLock && sd_bus_message_is_signal(signal, nullptr, "Unlock") <= 0) return;
    changed(sd_bus_message_get_path(signal),
            [isLock](Session& session) { session.wasAskedToLock = isLock; });
  });
  hear(bus, from + "member='SessionRemoved'", [changed](sd_bus_message* signal) {
    const char* id = nullptr;
    const char* path = nullptr;
    if (sd_bus_message_read(signal, "so", &id, &path) > 0)
      changed(path, [](Session& session) { session = Session(); });
  });
  hear(bus, from + "member='PrepareForSleep'", [sleep = std::move(sleep)](sd_bus_message* signal) {
    int isAsleep = 0;
    if (sd_bus_message_read(signal, "b", &isAsleep) > 0) sleep(isAsleep != 0);
  });
}

}  // namespace vorrin::input_helper
