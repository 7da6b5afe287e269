#include "tests/x11/harness/process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace vorrin::x11_tests {

namespace {

using Clock = std::chrono::steady_clock;

struct Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

Pipe makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

// False when nothing can be read from `descriptor` before `end`.
bool waitReadable(int descriptor, Clock::time_point end) {
  while (true) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd entry{descriptor, POLLIN, 0};
    const int ready = ::poll(&entry, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

[[noreturn]] void runChild(const std::vector<std::string>& command, const Environment& environment,
                           const Pipe& input, const Pipe& output, pid_t parent) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) ::_exit(127);
  ::dup2(input.readEnd.get(), STDIN_FILENO);
  ::dup2(output.writeEnd.get(), STDOUT_FILENO);
  for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  ::execvp(arguments[0], arguments.data());
  ::_exit(127);
}

}  // namespace

Process::Process(const std::vector<std::string>& command, const Environment& environment) {
  Pipe input = makePipe();
  Pipe output = makePipe();
  const pid_t parent = ::getpid();
  id_ = ::fork();
  if (id_ < 0) throw std::runtime_error("cannot start " + command[0]);
  if (id_ == 0) runChild(command, environment, input, output, parent);
  input_ = std::move(input.writeEnd);
  output_ = std::move(output.readEnd);
}

Process::~Process() {
  if (ending_) return;
  signal(SIGKILL);
  waitForEnd();
}

std::optional<std::string> Process::readLine(std::chrono::milliseconds bound) {
  const auto end = Clock::now() + bound;
  while (lines_.empty()) {
    if (!waitReadable(output_.get(), end)) return std::nullopt;
    std::array<char, 65536> buffer{};
    const ssize_t count = ::read(output_.get(), buffer.data(), buffer.size());
    if (count <= 0) return std::nullopt;
    takeLines(std::string(buffer.data(), static_cast<std::size_t>(count)));
  }
  std::string line = std::move(lines_.front());
  lines_.pop_front();
  return line;
}

void Process::takeLines(const std::string& text) {
  unfinished_ += text;
  std::size_t start = 0;
  for (std::size_t feed = unfinished_.find('\n'); feed != std::string::npos;
       feed = unfinished_.find('\n', start)) {
    lines_.push_back(unfinished_.substr(start, feed - start));
    start = feed + 1;
  }
  unfinished_.erase(0, start);
}

void Process::writeLine(const std::string& line) {
  const std::string text = line + '\n';
  if (::write(input_.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("cannot write to a process");
  }
}

void Process::signal(int number) const {
  ::kill(id_, number);
}

std::optional<Ending> Process::waitForEnd(std::chrono::milliseconds bound) {
  if (ending_) return ending_;
  const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, id_, 0)));
  if (!waitReadable(process.get(), Clock::now() + bound)) return std::nullopt;
  int status = 0;
  ::waitpid(id_, &status, 0);
  ending_ =
      WIFSIGNALED(status) ? Ending{true, WTERMSIG(status)} : Ending{false, WEXITSTATUS(status)};
  return ending_;
}

}  // namespace vorrin::x11_tests
