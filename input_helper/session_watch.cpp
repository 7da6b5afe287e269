#include "input_helper/session_watch.h"

#include <poll.h>
#include <systemd/sd-login.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <utility>

#include "input_helper/log.h"

namespace vorrin::input_helper {
namespace {

constexpr const char* loginManager = "org.freedesktop.login1";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* managerPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* authority = "org.freedesktop.PolicyKit1";
constexpr const char* authorityPath = "/org/freedesktop/PolicyKit1/Authority";
constexpr const char* authorityInterface = "org.freedesktop.PolicyKit1.Authority";
constexpr const char* action = "org.vorrin.input-helper";

/// The bus must never hold up the keyboard for longer.
constexpr std::uint64_t callLimitMicroseconds = 500'000;

struct Free {
  void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, Free>;

/// The session the process belongs to; desktops that start programs as services of the user have
/// it belong to none, and then it is the one on the user's display.
std::string sessionOf(const Peer& peer) {
  char* name = nullptr;
  if (sd_pid_get_session(peer.process, &name) < 0 && sd_uid_get_display(peer.user, &name) < 0) {
    return {};
  }
  return Text(name).get();
}

/// When the process started, in the unit of /proc: tells it from a later one of the same number.
std::uint64_t startOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  // The second field, a name in brackets, may hold anything; the start is the twenty-second.
  auto place = text.rfind(')');
  for (int field = 2; field < 22 && place != std::string::npos; ++field) {
    place = text.find(' ', place + 1);
  }
  return place == std::string::npos ? 0 : std::strtoull(text.c_str() + place, nullptr, 10);
}

}  // namespace

template <SessionWatch::Handler handler>
int SessionWatch::handle(sd_bus_message* message, void* self, sd_bus_error*) {
  (static_cast<SessionWatch*>(self)->*handler)(message);
  return 0;
}

SessionWatch::SessionWatch(const Peer& peer, bool permissionNeeded, Changes changes)
    : changes_(std::move(changes)) {
  sd_bus* bus = nullptr;
  if (sd_bus_open_system(&bus) < 0) return;
  bus_.reset(bus);
  watchSession(peer);
  if (permissionNeeded) watchPermission(peer);
}

void SessionWatch::watchSession(const Peer& peer) {
  const auto session = sessionOf(peer);
  char* path = nullptr;
  if (session.empty() ||
      sd_bus_path_encode("/org/freedesktop/login1/session", session.c_str(), &path) < 0) {
    log("its user has no session here; it counts as active");
    return;
  }
  const Text owner(path);
  match<&SessionWatch::propertiesChanged>(loginManager, path, "org.freedesktop.DBus.Properties",
                                          "PropertiesChanged");
  match<&SessionWatch::lockSignalled>(loginManager, path, sessionInterface, "Lock");
  match<&SessionWatch::unlockSignalled>(loginManager, path, sessionInterface, "Unlock");
  match<&SessionWatch::sleepSignalled>(loginManager, managerPath, managerInterface,
                                       "PrepareForSleep");
  readSession(path);
}

void SessionWatch::readSession(const char* path) {
  int active = 1;
  int locked = 0;
  sd_bus_set_method_call_timeout(bus_.get(), callLimitMicroseconds);
  sd_bus_get_property_trivial(bus_.get(), loginManager, path, sessionInterface, "Active", nullptr,
                              'b', &active);
  sd_bus_get_property_trivial(bus_.get(), loginManager, path, sessionInterface, "LockedHint",
                              nullptr, 'b', &locked);
  // What is not waited for may take longer.
  sd_bus_set_method_call_timeout(bus_.get(), 0);
  inFront_ = active != 0;
  locked_ = locked != 0;
}

/// Without a handler of its own for the request's end, one that failed would close the bus.
template <SessionWatch::Handler handler>
void SessionWatch::match(const char* sender, const char* path, const char* interface,
                         const char* member) {
  sd_bus_match_signal_async(
      bus_.get(), nullptr, sender, path, interface, member, handle<handler>,
      [](sd_bus_message* reply, void*, sd_bus_error*) {
        if (sd_bus_message_is_method_error(reply, nullptr) != 0) {
          log("the system bus does not tell it of every change");
        }
        return 0;
      },
      this);
}

void SessionWatch::watchPermission(const Peer& peer) {
  peerProcess_ = static_cast<std::uint32_t>(peer.process);
  peerStart_ = startOf(peer.process);
  match<&SessionWatch::authorityChanged>(authority, authorityPath, authorityInterface, "Changed");
  askAuthority();
}

void SessionWatch::askAuthority() {
  sd_bus_message* call = nullptr;
  if (sd_bus_message_new_method_call(bus_.get(), &call, authority, authorityPath,
                                     authorityInterface, "CheckAuthorization") < 0) {
    return;
  }
  // The subject, the action, no details, no question to the user, no cancellation.
  sd_bus_message_append(call, "(sa{sv})sa{ss}us", "unix-process", 2, "pid", "u", peerProcess_,
                        "start-time", "t", peerStart_, action, 0, 0U, "");
  sd_bus_call_async(bus_.get(), nullptr, call, handle<&SessionWatch::authorizationTold>, this, 0);
  sd_bus_message_unref(call);
}

void SessionWatch::authorityChanged(sd_bus_message*) {
  askAuthority();
}

void SessionWatch::authorizationTold(sd_bus_message* message) {
  int authorized = 0;
  int challenge = 0;
  if (sd_bus_message_is_method_error(message, nullptr) != 0 ||
      sd_bus_message_enter_container(message, 'r', "bba{ss}") < 0 ||
      sd_bus_message_read(message, "bb", &authorized, &challenge) < 0) {
    return;
  }
  // What was given once, after a question, ends by itself after some minutes; that takes nothing
  // back. A rule that is gone, or says no, does.
  if (authorized == 0 && (challenge == 0 || standing_)) {
    changes_.revoked();
    return;
  }
  const char* key = nullptr;
  const char* value = nullptr;
  bool temporary = false;
  sd_bus_message_enter_container(message, 'a', "{ss}");
  while (sd_bus_message_read(message, "{ss}", &key, &value) > 0) {
    temporary = temporary || std::strcmp(key, "polkit.temporary_authorization_id") == 0;
  }
  standing_ = authorized != 0 && !temporary;
}

void SessionWatch::propertiesChanged(sd_bus_message* message) {
  const char* interface = nullptr;
  if (sd_bus_message_read(message, "s", &interface) < 0 ||
      std::strcmp(interface, sessionInterface) != 0 ||
      sd_bus_message_enter_container(message, 'a', "{sv}") < 0) {
    return;
  }
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* name = nullptr;
    if (sd_bus_message_read(message, "s", &name) < 0) return;
    bool* const known = std::strcmp(name, "Active") == 0       ? &inFront_
                        : std::strcmp(name, "LockedHint") == 0 ? &locked_
                                                               : nullptr;
    int value = 0;
    if (known == nullptr) {
      sd_bus_message_skip(message, "v");
    } else if (sd_bus_message_read(message, "v", "b", &value) >= 0) {
      *known = value != 0;
    }
    sd_bus_message_exit_container(message);
  }
  report();
}

void SessionWatch::lockSignalled(sd_bus_message*) {
  locked_ = true;
  report();
}

void SessionWatch::unlockSignalled(sd_bus_message*) {
  assumeUnlocked();
}

void SessionWatch::assumeUnlocked() {
  locked_ = false;
  report();
}

void SessionWatch::sleepSignalled(sd_bus_message* message) {
  int asleep = 0;
  if (sd_bus_message_read(message, "b", &asleep) < 0) return;
  asleep_ = asleep != 0;
  report();
}

void SessionWatch::report() {
  if (isActive() == reported_) return;
  reported_ = isActive();
  changes_.activity(reported_);
}

int SessionWatch::number() const {
  return bus_ ? sd_bus_get_fd(bus_.get()) : -1;
}

short SessionWatch::awaitedEvents() const {
  const int events = bus_ ? sd_bus_get_events(bus_.get()) : 0;
  return static_cast<short>(events > 0 ? events : 0);
}

void SessionWatch::dispatch() {
  if (!bus_) return;
  int more = 0;
  do {
    more = sd_bus_process(bus_.get(), nullptr);
  } while (more > 0);
  if (more >= 0) return;
  bus_.reset();
  changes_.deaf();
}

}  // namespace vorrin::input_helper
