#include "helper_process.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <utility>

namespace vorrin::machine {

using namespace helper_protocol;

HelperProcess::HelperProcess(bool greet) : log_(::memfd_create("log", MFD_CLOEXEC)) {
  auto ends = makeSocketPair();
  if (!ends || !nameSenders(ends->first.number())) std::abort();
  process_ = ::fork();
  if (process_ < 0) std::abort();
  if (process_ == 0) {
    ::dup2(ends->second.number(), STDIN_FILENO);
    ::dup2(log_.number(), STDERR_FILENO);
    // It may not look at its own memory, which the search for leaks would need.
    ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    // Neither arguments nor environment nor directory mean anything to it.
    ::setenv("PKEXEC_UID", "0", 1);
    if (::chdir("/tmp") != 0 || ::open(leftOpen(), O_RDONLY) < 0) ::_exit(126);
    ::execl(HELPER_PATH, "helper", "--grab-everything", "/etc/passwd", nullptr);
    ::_exit(127);
  }
  connection_ = std::move(ends->first);
  if (greet) say(Hello{});
}

HelperProcess::~HelperProcess() {
  if (ended()) return;
  const pid_t worker = workingPart();
  ::kill(process_, SIGKILL);
  if (worker > 0) ::kill(worker, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

void HelperProcess::listen() {
  Packet packet;
  while (connection_.isOpen() && receivePacket(connection_.number(), packet) == Received::packet) {
    const auto message = decodeFromHelper(packet.view());
    if (!message) std::abort();
    said_.push_back(*message);
    const auto* question = std::get_if<Question>(&*message);
    if (question == nullptr) continue;
    if (const auto swallow = verdict(*question)) say(Verdict{question->number, *swallow});
  }
}

void HelperProcess::say(const ToHelper& message) const {
  // What it does with its end is the matter of the tests.
  [[maybe_unused]] const bool sent = sendPacket(connection_.number(), encode(message));
}

void HelperProcess::sayBytes(const std::string& bytes) const {
  if (::send(connection_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) std::abort();
}

void HelperProcess::sayAsAnotherProgram(const ToHelper& message) const {
  const pid_t other = ::fork();
  if (other == 0) {
    say(message);
    ::_exit(0);
  }
  if (::waitpid(other, nullptr, 0) != other) std::abort();
}

void HelperProcess::configure(std::vector<std::uint16_t> keys, bool enabled) const {
  Configure configuration{enabled, static_cast<std::uint8_t>(keys.size()), {}};
  std::ranges::copy(keys, configuration.keys.begin());
  say(configuration);
}

void HelperProcess::post(std::uint16_t key, int times) const {
  for (int i = 0; i < times; ++i) say(Post{2, {{{key, true}, {key, false}}}});
}

bool HelperProcess::ended() {
  if (ended_) return true;
  int status = 0;
  if (::waitpid(process_, &status, WNOHANG) != process_) return false;
  ended_ = true;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return true;
}

std::string HelperProcess::log() const {
  std::string text(static_cast<std::size_t>(::lseek(log_.number(), 0, SEEK_END)), ' ');
  const auto size = ::pread(log_.number(), text.data(), text.size(), 0);
  return size == static_cast<ssize_t>(text.size()) ? text : std::string();
}

pid_t HelperProcess::workingPart() const {
  const auto process = std::to_string(process_);
  pid_t child = 0;
  std::ifstream("/proc/" + process + "/task/" + process + "/children") >> child;
  return child;
}

}  // namespace vorrin::machine
