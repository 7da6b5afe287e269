#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <utility>

#include "input_helper/log.h"
#include "input_helper/opener.h"
#include "input_helper/privileges.h"
#include "input_helper/protocol/packet_socket.h"
#include "input_helper/worker.h"

namespace vorrin::input_helper {
namespace {

int work(FileDescriptor opener, const Peer& peer, bool permissionNeeded) {
  if (!becomePeer(peer)) {
    log("it cannot give up its rights");
    return 1;
  }
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  // The privileged part may have ended before that was set; its socket tells then.
  return serveMainProgram(FileDescriptor(STDIN_FILENO), Opener(std::move(opener)), peer,
                          permissionNeeded);
}

int run() {
  isolateProcess();
  const auto peer = peerOf(STDIN_FILENO);
  if (!peer) {
    log("it is started by Vorrin only, with a connection as its standard input");
    return 2;
  }
  auto ends = helper_protocol::makeSocketPair();
  if (!ends) return 1;
  const bool permissionNeeded = ::geteuid() == 0 && peer->user != 0;
  const pid_t worker = ::fork();
  if (worker < 0) return 1;
  if (worker == 0) {
    ends->first.reset();
    return work(std::move(ends->second), *peer, permissionNeeded);
  }
  ends->second.reset();
  // The main program is to notice the end of the worker, whose connection this is.
  ::close(STDIN_FILENO);
  if (!keepDeviceRights()) {
    ::kill(worker, SIGKILL);
    return 1;
  }
  return serveOpener(std::move(ends->first), worker);
}

}  // namespace
}  // namespace vorrin::input_helper

int main() {
  return vorrin::input_helper::run();
}
