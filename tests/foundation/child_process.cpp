#include "tests/foundation/child_process.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace vorrin {

ChildProcess::ChildProcess(const std::function<bool()>& body)
    : errorFile_(::memfd_create("standard error", MFD_CLOEXEC)) {
  std::fflush(nullptr);
  id_ = ::fork();
  if (id_ != 0) return;
  ::dup2(errorFile_, STDERR_FILENO);
  const bool succeeded = body();
  std::fflush(nullptr);
  ::_exit(succeeded ? EXIT_SUCCESS : EXIT_FAILURE);
}

ChildProcess::~ChildProcess() {
  kill();
  ::close(errorFile_);
}

bool ChildProcess::wait() {
  if (!ended_) {
    int status = 0;
    ended_ = ::waitpid(id_, &status, 0) == id_;
    succeeded_ = ended_ && WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
  }
  return succeeded_;
}

void ChildProcess::kill() {
  if (ended_) return;
  ::kill(id_, SIGKILL);
  wait();
}

std::string ChildProcess::errors() const {
  std::string text;
  std::array<char, 4096> buffer{};
  for (;;) {
    const ssize_t count =
        ::pread(errorFile_, buffer.data(), buffer.size(), static_cast<off_t>(text.size()));
    if (count <= 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

int linesWith(const std::string& text, const std::string& part) {
  int count = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.find(part) != std::string::npos) ++count;
  }
  return count;
}

uid_t ordinaryUser() {
  constexpr uid_t nobody = 65534;
  return ::geteuid() == 0 ? nobody : ::geteuid();
}

void becomeOrdinaryUser() {
  const uid_t user = ordinaryUser();
  if (::geteuid() != user && (::setgid(user) != 0 || ::setuid(user) != 0)) std::abort();
}

}  // namespace vorrin
