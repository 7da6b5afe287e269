#include "platform/linux/input/x11/main_loop_watch.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <utility>

#include "platform/fatal_error.h"

namespace vorrin::x11 {

struct MainLoopWatch::Native : QSocketNotifier {
  using QSocketNotifier::QSocketNotifier;
  QMetaObject::Connection beforeSleep;
};

void MainLoopWatch::DeleteLater::operator()(Native* native) const {
  native->setEnabled(false);
  QObject::disconnect(native->beforeSleep);
  native->deleteLater();
}

MainLoopWatch::MainLoopWatch(xcb_connection_t* connection, std::function<void(NextEvent)> serve)
    : native_(new Native(xcb_get_file_descriptor(connection), QSocketNotifier::Read)) {
  const auto* const loop = QAbstractEventDispatcher::instance();
  precondition(loop != nullptr, "the main loop exists");
  QObject::connect(native_.get(), &QSocketNotifier::activated, native_.get(),
                   [serve] { serve(&xcb_poll_for_event); });
  native_->beforeSleep =
      QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, native_.get(),
                       [serve = std::move(serve)] { serve(&xcb_poll_for_queued_event); });
}

void MainLoopWatch::closeSocket() {
  native_->setEnabled(false);
}

}  // namespace vorrin::x11
