#include "platform/run_loop.h"

#include <sys/prctl.h>

#include <QCoreApplication>
#include <QEventLoop>

#include "platform/linux/time/timer_native.h"

namespace vorrin {

namespace {

// Qt's event loop needs an application object. A program without a window makes none itself; the
// one made here stays until the process ends, so that timers may outlive every function.
void provideApplication() {
  if (QCoreApplication::instance() != nullptr) return;
  static char name[] = "vorrin";
  static char* arguments[] = {name, nullptr};
  static int argumentCount = 1;
  [[maybe_unused]] static const auto* const application =
      new QCoreApplication(argumentCount, arguments);
}

// By default the kernel may end a wait up to 50 microseconds late to save wake-ups.
void refuseTimerSlack() {
  [[maybe_unused]] static const int result = ::prctl(PR_SET_TIMERSLACK, 1UL);
}

}  // namespace

RunLoop RunLoop::main() {
  return {};
}

// Qt serves every source in nested loops too: in both modes a timer fires always.
void RunLoop::add(const Timer& timer, RunLoopMode mode) const {
  if (!timer.native_->valid || timer.native_->source) return;
  provideApplication();
  refuseTimerSlack();
  timer.native_->schedule(mode);
}

void RunLoop::runFor(double seconds) const {
  provideApplication();
  QEventLoop loop;
  const Timer end(seconds, [&loop] { loop.quit(); });
  add(end, RunLoopMode::standard);
  loop.exec();
  end.invalidate();
}

}  // namespace vorrin
