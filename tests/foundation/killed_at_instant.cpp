#include "tests/foundation/killed_at_instant.h"

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace vorrin {

namespace {

/// Whether `child`, stopped by PTRACE_SYSCALL, is about to make a system call that may change what
/// other processes find. To kill it before another call is the same as to kill it before the next.
bool isAtAnInstant(pid_t child) {
  __ptrace_syscall_info info{};
  ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
  constexpr std::array harmless = {
      SYS_brk,        SYS_clock_gettime, SYS_fstat,      SYS_futex,   SYS_getcwd,
      SYS_geteuid,    SYS_getpid,        SYS_lseek,      SYS_madvise, SYS_mmap,
      SYS_mprotect,   SYS_munmap,        SYS_newfstatat, SYS_pread64, SYS_read,
      SYS_readlinkat, SYS_rt_sigprocmask};
  return info.op == PTRACE_SYSCALL_INFO_ENTRY &&
         std::find(harmless.begin(), harmless.end(), static_cast<long>(info.entry.nr)) ==
             harmless.end();
}

}  // namespace

bool killedAtInstant(int count, const std::function<void()>& body) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    body();
    ::_exit(EXIT_SUCCESS);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD);
  for (int instants = 0; WIFSTOPPED(status) && instants <= count;) {
    ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    ::waitpid(child, &status, 0);
    if (WIFSTOPPED(status) && isAtAnInstant(child)) ++instants;
  }
  if (!WIFSTOPPED(status)) return false;
  ::kill(child, SIGKILL);
  ::waitpid(child, &status, 0);
  return true;
}

}  // namespace vorrin
