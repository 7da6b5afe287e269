#include "platform/linux/input/x11/connection_keeper.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/linux/foundation/spawn_actions.h"

namespace vorrin::x11 {

namespace {

constexpr int firstConnection = STDERR_FILENO + 1;

std::string programPath() {
  std::error_code failure;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
  const auto beside = (program.parent_path() / VORRIN_KEEPER_BESIDE_PROGRAM).lexically_normal();
  return std::filesystem::exists(beside, failure) ? beside.string() : VORRIN_KEEPER_INSTALLED;
}

/// Copies above all numbers that the process will have them by: none is overwritten by another.
std::vector<FileDescriptor> copiesOf(std::span<const int> descriptors) {
  const int lowest = firstConnection + static_cast<int>(descriptors.size());
  std::vector<FileDescriptor> copies;
  for (const int descriptor : descriptors) {
    copies.emplace_back(::fcntl(descriptor, F_DUPFD_CLOEXEC, lowest));
  }
  return copies;
}

/// What the process has open: the pipe, nothing to write on, and the connections.
void hand(SpawnActions& actions, const std::vector<FileDescriptor>& opened) {
  int number = STDIN_FILENO;
  for (const FileDescriptor& descriptor : opened) {
    posix_spawn_file_actions_adddup2(&actions.value, descriptor.get(), number);
    if (number == STDIN_FILENO) number = STDERR_FILENO;
    ++number;
  }
  for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions.value, output, "/dev/null", O_WRONLY, 0);
  }
  posix_spawn_file_actions_addclosefrom_np(&actions.value, number);
}

}  // namespace

ConnectionKeeper::ConnectionKeeper(std::span<const int> connections) {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
  const FileDescriptor far(ends[0]);
  pipe_ = FileDescriptor(ends[1]);
  std::vector<int> wanted{far.get()};
  wanted.insert(wanted.end(), connections.begin(), connections.end());
  const std::vector<FileDescriptor> opened = copiesOf(wanted);
  SpawnActions actions;
  hand(actions, opened);
  std::string program = programPath();
  std::string number = std::to_string(connections.size());
  const std::array<char*, 3> arguments{program.data(), number.data(), nullptr};
  if (::posix_spawn(&process_, program.c_str(), &actions.value, nullptr, arguments.data(),
                    environ) != 0) {
    process_ = -1;
  }
}

ConnectionKeeper::~ConnectionKeeper() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

}  // namespace vorrin::x11
