#include "platform/linux/widgets/termination_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include "platform/fatal_error.h"

namespace vorrin {

namespace {

constexpr std::array watchedSignals = {SIGTERM, SIGINT, SIGHUP};

// A signal handler can reach nothing but globals. The pipe stays open for the rest of the process:
// a handler may still be running on its way out.
std::atomic<int> writeEnd = -1;

void wakeMainLoop(int) {
  const int savedError = errno;
  const char byte = 0;
  [[maybe_unused]] const auto written = write(writeEnd, &byte, 1);
  errno = savedError;
}

int openPipe() {
  std::array<int, 2> ends{};
  precondition(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) == 0, "a pipe can be made");
  writeEnd = ends[1];
  return ends[0];
}

int readEnd() {
  static const int end = openPipe();
  return end;
}

void setHandler(int signal, void (*handler)(int)) {
  struct sigaction previous {};
  if (sigaction(signal, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
    : notifier_(std::make_unique<QSocketNotifier>(readEnd(), QSocketNotifier::Read)) {
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [terminate = std::move(terminate)] {
                     std::array<char, 16> bytes{};
                     while (read(readEnd(), bytes.data(), bytes.size()) > 0) {
                     }
                     terminate();
                   });
  for (const int signal : watchedSignals) setHandler(signal, wakeMainLoop);
}

TerminationSignals::~TerminationSignals() {
  for (const int signal : watchedSignals) setHandler(signal, SIG_DFL);
}

}  // namespace vorrin
