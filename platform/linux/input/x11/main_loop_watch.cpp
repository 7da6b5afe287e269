#include "platform/linux/input/x11/main_loop_watch.h"

#include <QAbstractEventDispatcher>
#include <QObject>
#include <QSocketNotifier>
#include <utility>

#include "platform/fatal_error.h"

namespace vorrin::x11 {

struct MainLoopWatch::Native {
  std::function<void()> serve;
  std::function<bool()> isWaiting;
  QSocketNotifier notifier;
};

MainLoopWatch::MainLoopWatch(int fileDescriptor, std::function<void()> serve,
                             std::function<bool()> isWaiting)
    : native_(new Native{std::move(serve), std::move(isWaiting),
                         QSocketNotifier(fileDescriptor, QSocketNotifier::Read)}) {
  QAbstractEventDispatcher* const loop = QAbstractEventDispatcher::instance();
  precondition(loop != nullptr, "the main loop exists");
  QSocketNotifier* const notifier = &native_->notifier;
  const auto run = [native = native_.get()] { native->serve(); };
  QObject::connect(notifier, &QSocketNotifier::activated, notifier, run);
  QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, notifier,
                   [native = native_.get()] {
                     if (native->isWaiting()) native->serve();
                   });
}

MainLoopWatch::~MainLoopWatch() = default;

void MainLoopWatch::wake() {
  QMetaObject::invokeMethod(
      &native_->notifier, [native = native_.get()] { native->serve(); }, Qt::QueuedConnection);
}

void MainLoopWatch::closeDescriptor() {
  native_->notifier.setEnabled(false);
}

}  // namespace vorrin::x11
