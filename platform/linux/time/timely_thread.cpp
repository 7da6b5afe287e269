#include "platform/linux/time/timely_thread.h"

#include <unistd.h>

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include "platform/linux/time/real_time_thread.h"
#include "platform/linux/time/timely_timers.h"

namespace vorrin {

namespace {

QDBusMessage requestForThisThread() {
  QDBusMessage call = QDBusMessage::createMethodCall(
      "org.freedesktop.RealtimeKit1", "/org/freedesktop/RealtimeKit1",
      "org.freedesktop.RealtimeKit1", "MakeThreadRealtime");
  call << static_cast<qulonglong>(::gettid()) << static_cast<uint>(realTimePriority);
  return call;
}

}  // namespace

TimelyThread::TimelyThread() {
  observeTimelyTimers([this](bool exist) { setNeeded(exist); });
}

TimelyThread::~TimelyThread() {
  observeTimelyTimers(nullptr);
  leaveRealTime();
}

void TimelyThread::setNeeded(bool isNeeded) {
  isNeeded_ = isNeeded;
  if (!isNeeded) return leaveRealTime();
  if (boundRealTime() && !enterRealTime()) askForRealTime();
}

void TimelyThread::askForRealTime() {
  if (!bus_) bus_ = lastingBus_.reach([this](const QDBusConnection& bus) { bus_ = bus; });
  if (!bus_->isConnected()) return;
  const auto* watcher = new QDBusPendingCallWatcher(bus_->asyncCall(requestForThisThread()), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* done) {
    done->deleteLater();
    // The answer may come when the macro has been stopped already.
    if (!isNeeded_) leaveRealTime();
  });
}

}  // namespace vorrin
