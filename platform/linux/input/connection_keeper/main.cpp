// Holds Vorrin's connections to the X server open when Vorrin is killed, until the server has
// carried out what Vorrin sent. A server that sees a connection's end gives up what it has not read
// by then: where that is the release of a key, the key stays down.
//
// usage: vorrin-connection-keeper COUNT
// COUNT connections lie on the descriptors from 3 on; standard input is a pipe whose other end
// Vorrin holds.
#include <linux/sockios.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

/// How long nothing may be left to read on either side until the server counts as done. To carry
/// out what it has read last, at most 16 KiB, takes it less.
constexpr int quietMilliseconds = 50;

void waitForEnd(int pipe) {
  char nothing = 0;
  while (::read(pipe, &nothing, 1) < 0 && errno == EINTR) {
  }
}

bool hasUnread(int connection) {
  int unread = 0;
  return ::ioctl(connection, SIOCOUTQ, &unread) == 0 && unread > 0;
}

/// Whether the server is gone.
bool hasEnded(const pollfd& connection) {
  return (connection.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

/// Reads what nobody else reads any more, for the server writes no more than fits.
void drain(int connection) {
  std::array<char, 4096> news{};
  [[maybe_unused]] const auto size = ::read(connection, news.data(), news.size());
}

void keepUntilQuiet(std::vector<pollfd> connections) {
  while (!connections.empty()) {
    const int ready = ::poll(connections.data(), connections.size(), quietMilliseconds);
    if (ready < 0 && errno != EINTR) return;
    const bool isQuiet =
        ready == 0 && std::none_of(connections.begin(), connections.end(),
                                   [](const pollfd& one) { return hasUnread(one.fd); });
    if (isQuiet) return;
    std::erase_if(connections, hasEnded);
    for (const pollfd& one : connections) {
      if ((one.revents & POLLIN) != 0) drain(one.fd);
    }
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  constexpr int most = 8;
  const int count = argumentCount == 2 ? std::atoi(arguments[1]) : 0;
  if (count < 1 || count > most) {
    std::fputs("vorrin-connection-keeper: only Vorrin starts this\n", stderr);
    return 2;
  }
  // What ends Vorrin lets it end in order, and it then ends this too.
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) std::signal(signal, SIG_IGN);
  std::vector<pollfd> connections(static_cast<std::size_t>(count));
  int descriptor = STDERR_FILENO;
  for (pollfd& one : connections) one = {.fd = ++descriptor, .events = POLLIN, .revents = 0};
  waitForEnd(STDIN_FILENO);
  keepUntilQuiet(std::move(connections));
}
