#include "platform/linux/session/silent_buses.h"

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>

#include "platform/linux/foundation/file_descriptor.h"
#include "platform/linux/session/bus_address.h"

namespace vorrin {

namespace {

constexpr std::chrono::milliseconds patience{1000};

bool waitFor(const FileDescriptor& socket, short events) {
  pollfd watched{.fd = socket.get(), .events = events, .revents = 0};
  return ::poll(&watched, 1, static_cast<int>(patience.count())) == 1 &&
         (watched.revents & events) != 0;
}

/// A bus whose process hangs still takes connections, for the kernel does that. What tells is
/// whether it answers the question for the ways to authenticate, which any bus does at once.
bool answers(const LocalSocketAddress& place) {
  // A connection that would have to wait for a full queue fails instead.
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket.isOpen() || ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&place.address),
                                    place.length) != 0) {
    return false;
  }
  constexpr char question[] = "\0AUTH\r\n";
  constexpr std::size_t length = sizeof(question) - 1;
  if (::send(socket.get(), question, length, MSG_NOSIGNAL) != static_cast<ssize_t>(length)) {
    return false;
  }
  char firstByte = 0;
  return waitFor(socket, POLLIN) && ::recv(socket.get(), &firstByte, 1, 0) == 1;
}

bool mayAnswer(const BusAddress& place) {
  // "autolaunch" is the wish to have a bus started. Buses on other machines and the like are taken
  // at their word.
  if (place.transport == "unix") return place.local && answers(*place.local);
  return place.transport != "autolaunch";
}

/// Where a bus is to be found.
struct BusPlace {
  const char* variable;
  const char* usual;  ///< where the variable says nothing
};

constexpr BusPlace sessionBus{"DBUS_SESSION_BUS_ADDRESS", "unix:runtime=yes"};
constexpr BusPlace systemBus{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/run/dbus/system_bus_socket"};

bool mayAnswer(const BusPlace& place) {
  const char* const named = std::getenv(place.variable);
  const auto addresses = readBusAddresses(named != nullptr && *named != '\0' ? named : place.usual);
  return std::any_of(addresses.begin(), addresses.end(),
                     [](const BusAddress& address) { return mayAnswer(address); });
}

}  // namespace

void disregardSilentBuses() {
  for (const BusPlace& place : {sessionBus, systemBus}) {
    if (!mayAnswer(place)) ::setenv(place.variable, "disabled:", 1);
  }
}

bool sessionBusMayAnswer() {
  return mayAnswer(sessionBus);
}

bool systemBusMayAnswer() {
  return mayAnswer(systemBus);
}

}  // namespace vorrin
