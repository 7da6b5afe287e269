#include "platform/linux/widgets/termination_signals.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace vorrin {

namespace {

/// A signal handler can reach nothing but globals. Open for the rest of the process, for a handler
/// may still be running on its way out.
const int wakeUps = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

void wakeMainLoop(int) {
  const int savedError = errno;
  ::eventfd_write(wakeUps, 1);
  errno = savedError;
}

void handle(int signal) {
  struct sigaction previous {};
  if (sigaction(signal, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = wakeMainLoop;
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
    : notifier_(wakeUps, QSocketNotifier::Read) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                   [terminate = std::move(terminate)] {
                     eventfd_t count = 0;
                     ::eventfd_read(wakeUps, &count);
                     terminate();
                   });
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) handle(signal);
}

}  // namespace vorrin
