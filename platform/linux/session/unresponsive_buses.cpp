#include "platform/linux/session/unresponsive_buses.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin {

namespace {

constexpr int authenticationMilliseconds = 1000;

/// The socket's path in an address such as "unix:path=/run/user/1000/bus,guid=..."; empty in those
/// of other kinds, which are taken at their word.
std::string pathIn(const std::string& address) {
  const std::string beginning = "unix:path=";
  if (!address.starts_with(beginning)) return {};
  return address.substr(beginning.size(), address.find_first_of(",;") - beginning.size());
}

/// Whether there is a bus that does not answer. The kernel takes connections for a process that
/// hangs; what tells is the question for the ways to authenticate, which any bus answers at once.
bool hangs(const std::string& busPath) {
  sockaddr_un place{.sun_family = AF_UNIX, .sun_path = {}};
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket.isOpen() || busPath.empty() || busPath.size() >= sizeof(place.sun_path)) return false;
  busPath.copy(place.sun_path, busPath.size());
  if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&place), sizeof(place)) != 0) {
    return errno == EAGAIN;  // its queue is full
  }
  constexpr char question[] = "\0AUTH\r\n";
  ::send(socket.get(), question, sizeof(question) - 1, MSG_NOSIGNAL);
  pollfd answer{.fd = socket.get(), .events = POLLIN, .revents = 0};
  return ::poll(&answer, 1, authenticationMilliseconds) == 0;
}

void leaveOutIfUnresponsive(const char* variable, const std::string& usual) {
  const char* const named = std::getenv(variable);
  if (hangs(pathIn(named != nullptr ? named : usual))) ::setenv(variable, "disabled:", 1);
}

}  // namespace

void leaveOutUnresponsiveBuses() {
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  const std::string ofUser = runtime != nullptr ? runtime : "";
  leaveOutIfUnresponsive("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + ofUser + "/bus");
  leaveOutIfUnresponsive("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/run/dbus/system_bus_socket");
}

}  // namespace vorrin
