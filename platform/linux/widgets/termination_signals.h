#pragma once

#include <QSocketNotifier>
#include <functional>

namespace vorrin {

/// Turns the signals that ask a process to end (SIGTERM, SIGINT, SIGHUP) into a call on the main
/// thread. A second signal of the same kind ends the process at once, as if nothing were installed;
/// a signal that was ignored at the start stays ignored. There is one such object.
class TerminationSignals {
 public:
  explicit TerminationSignals(std::function<void()> terminate);

 private:
  QSocketNotifier notifier_;
};

}  // namespace vorrin
