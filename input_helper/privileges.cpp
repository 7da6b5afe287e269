#include "input_helper/privileges.h"

#include <grp.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>

namespace vorrin::input_helper {
namespace {

/// The system call itself: the usual wrapper is a library of its own.
bool setCapabilities(std::uint64_t kept) {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
  for (std::size_t i = 0; i < sets.size(); ++i) {
    const auto bits = static_cast<std::uint32_t>(kept >> (32 * i));
    sets[i].effective = bits;
    sets[i].permitted = bits;
  }
  return ::syscall(SYS_capset, &header, sets.data()) == 0;
}

}  // namespace

std::optional<Peer> peerOf(int descriptor) {
  int type = 0;
  socklen_t size = sizeof type;
  if (::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) != 0) return std::nullopt;
  ucred credentials{};
  size = sizeof credentials;
  if (::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) {
    return std::nullopt;
  }
  if (type != SOCK_SEQPACKET || credentials.pid <= 0) return std::nullopt;
  return Peer{credentials.pid, credentials.uid, credentials.gid};
}

void isolateProcess() {
  ::clearenv();
  ::umask(077);
  if (::chdir("/") != 0) std::abort();
  if (::close_range(STDERR_FILENO + 1, ~0U, 0) != 0) std::abort();
  const rlimit noDump{0, 0};
  ::setrlimit(RLIMIT_CORE, &noDump);
  ::prctl(PR_SET_DUMPABLE, 0);
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  // Fails for the leader of a group, which a terminal's Control-Z does not reach then either.
  ::setsid();
}

bool becomePeer(const Peer& peer) {
  if (::geteuid() != 0) return ::geteuid() == peer.user && ::getuid() == peer.user;
  if (::setgroups(0, nullptr) != 0) return false;
  if (::setresgid(peer.group, peer.group, peer.group) != 0) return false;
  if (::setresuid(peer.user, peer.user, peer.user) != 0) return false;
  // Changing the user made the process dumpable as the administrator set it for all.
  return ::prctl(PR_SET_DUMPABLE, 0) == 0 && setCapabilities(0);
}

bool keepDeviceRights() {
  if (::geteuid() != 0) return true;
  return setCapabilities(std::uint64_t{1} << CAP_DAC_OVERRIDE | std::uint64_t{1} << CAP_KILL);
}

}  // namespace vorrin::input_helper
