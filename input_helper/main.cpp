// vorrin-input-helper: the service org.vorrin.InputHelper of the system bus. systemd starts it, as
// a user of its own and in a unit that leaves it hardly anything.

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>

#include "input_helper/log.h"
#include "input_helper/service.h"
#include "input_helper/uinput.h"

namespace {

/// The system call itself: the usual wrapper is a library of its own.
bool dropCapabilities() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  const std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none{};
  return ::syscall(SYS_capset, &header, none.data()) == 0;
}

/// Whether nobody may read the memory of this process, which holds keys, and it may do nothing
/// more.
bool isClosedOff() {
  return ::geteuid() != 0 && dropCapabilities() && ::prctl(PR_SET_DUMPABLE, 0) == 0;
}

}  // namespace

int main() {
  using namespace vorrin::input_helper;
  // These are opened with a right that is given up then.
  Uinput uinput;
  if (isClosedOff()) return serve(uinput, "/var/lib/vorrin-input-helper");
  log("it serves only as its own user, as systemd starts it");
  return 1;
}
