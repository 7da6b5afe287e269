#include "platform/linux/input/helper/launcher.h"

#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <utility>
#include <vector>

#include "platform/linux/foundation/spawn_actions.h"

namespace vorrin::helper {
namespace {

constexpr const char* pkexec = "/usr/bin/pkexec";

std::vector<std::string> commandLine(StartWay way) {
  if (way == StartWay::directly) return {helperPath(way)};
  if (way == StartWay::asking) return {pkexec, helperPath(way)};
  return {pkexec, "--disable-internal-agent", helperPath(way)};
}

std::optional<pid_t> spawn(std::vector<std::string> words, int standardInput) {
  SpawnActions actions;
  posix_spawn_file_actions_adddup2(&actions.value, standardInput, STDIN_FILENO);
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t process = 0;
  if (posix_spawn(&process, arguments[0], &actions.value, nullptr, arguments.data(), environ) !=
      0) {
    return std::nullopt;
  }
  return process;
}

}  // namespace

std::string helperPath(StartWay way) {
  std::error_code failure;
  const bool installed = std::filesystem::exists(VORRIN_HELPER_INSTALLED, failure);
  if (way != StartWay::directly && installed) return VORRIN_HELPER_INSTALLED;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
  const auto beside = (program.parent_path() / VORRIN_HELPER_BESIDE_PROGRAM).lexically_normal();
  return std::filesystem::exists(beside, failure) ? beside.string() : VORRIN_HELPER_INSTALLED;
}

bool devicesAreOpen() {
  if (::access("/dev/uinput", R_OK | W_OK) != 0) return false;
  std::error_code failure;
  bool any = false;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/input", failure)) {
    if (!entry.path().filename().string().starts_with("event")) continue;
    if (::access(entry.path().c_str(), R_OK | W_OK) != 0) return false;
    any = true;
  }
  return any;
}

std::optional<std::string> permissionProgram() {
  std::error_code failure;
  if (!std::filesystem::exists(VORRIN_PERMISSION_INSTALLED, failure)) return std::nullopt;
  return VORRIN_PERMISSION_INSTALLED;
}

std::unique_ptr<StartedProcess> StartedProcess::startHelper(StartWay way,
                                                            const FileDescriptor& connection,
                                                            std::function<void(int)> ended) {
  const auto process = spawn(commandLine(way), connection.number());
  if (!process) return nullptr;
  return std::unique_ptr<StartedProcess>(new StartedProcess(*process, std::move(ended)));
}

std::unique_ptr<StartedProcess> StartedProcess::changePermission(const std::string& program,
                                                                 const std::string& term,
                                                                 std::function<void(int)> ended) {
  const auto process = spawn({pkexec, program, term}, STDIN_FILENO);
  if (!process) return nullptr;
  return std::unique_ptr<StartedProcess>(new StartedProcess(*process, std::move(ended)));
}

StartedProcess::StartedProcess(pid_t process, std::function<void(int)> ended)
    : process_(process),
      watch_(static_cast<int>(::syscall(SYS_pidfd_open, process, 0))),
      ended_(std::move(ended)) {
  if (!watch_.isOpen()) return;
  notifier_ = std::make_unique<QSocketNotifier>(watch_.number(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { reap(); });
}

StartedProcess::~StartedProcess() {
  // Without its connection it is about to end; the next process to be made by this one need not
  // wait for that.
  if (process_ > 0) ::waitpid(process_, nullptr, WNOHANG);
}

void StartedProcess::reap() {
  int status = 0;
  if (::waitpid(process_, &status, WNOHANG) != process_) return;
  process_ = 0;
  notifier_->setEnabled(false);
  // The call may make this value go away.
  const auto ended = std::move(ended_);
  if (ended) ended(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
}

}  // namespace vorrin::helper
