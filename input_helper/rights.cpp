#include "input_helper/rights.h"

#include <grp.h>
#include <linux/capability.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>

namespace vorrin::input_helper {
namespace {

constexpr const char* ownUser = "vorrin-input";
constexpr const char* deviceGroup = "input";

bool becomeOwnUser() {
  const passwd* user = ::getpwnam(ownUser);
  const group* devices = ::getgrnam(deviceGroup);
  if (user == nullptr || devices == nullptr) return false;
  // What the unit of systemd does otherwise.
  const rlimit none{0, 0};
  ::mkdir(decisionsFolder, 0700);
  return ::setrlimit(RLIMIT_CORE, &none) == 0 &&
         ::chown(decisionsFolder, user->pw_uid, user->pw_gid) == 0 &&
         ::setgroups(1, &devices->gr_gid) == 0 &&
         ::setresgid(user->pw_gid, user->pw_gid, user->pw_gid) == 0 &&
         ::setresuid(user->pw_uid, user->pw_uid, user->pw_uid) == 0;
}

/// The system call itself: the usual wrapper is a library of its own.
bool dropCapabilities() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  const std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none{};
  return ::syscall(SYS_capset, &header, none.data()) == 0;
}

}  // namespace

bool giveUpRights() {
  ::umask(077);
  if (::geteuid() == 0 && !becomeOwnUser()) return false;
  // Changing the user made the process dumpable as the administrator set it for all.
  return dropCapabilities() && ::prctl(PR_SET_DUMPABLE, 0) == 0 &&
         ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

}  // namespace vorrin::input_helper
