#include "platform/linux/time/real_time.h"

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <algorithm>
#include <cerrno>
#include <csignal>

namespace vorrin {

namespace {

/// The lowest among real-time threads, for none of the system's own may wait for this.
constexpr unsigned priority = 1;

// In microseconds. The second is the most that RealtimeKit accepts.
constexpr rlim_t firstBound = 100'000;
constexpr rlim_t lastBound = 200'000;

int scheduledTimers = 0;
bool isUsed = false;

// The kernel sends it to the very thread that computed for too long.
void computedTooLong(int) {
  const int error = errno;
  leaveRealTime();
  errno = error;
}

bool handleBound() {
  struct sigaction action {};
  action.sa_handler = computedTooLong;
  action.sa_flags = SA_RESTART;
  return ::sigaction(SIGXCPU, &action, nullptr) == 0;
}

bool setBounds() {
  rlimit limit{};
  if (!handleBound() || ::getrlimit(RLIMIT_RTTIME, &limit) != 0) return false;
  limit.rlim_max = std::min(limit.rlim_max, lastBound);
  // The kernel moved the first bound up by a second when it was reached.
  limit.rlim_cur = std::min(limit.rlim_max, firstBound);
  return ::setrlimit(RLIMIT_RTTIME, &limit) == 0;
}

bool setPolicy(int policy, unsigned level) {
  const sched_param parameters{.sched_priority = static_cast<int>(level)};
  // Programs started by this one begin as ordinary ones. The flag cannot be taken back later, so it
  // belongs to every call.
  return ::sched_setscheduler(0, policy | SCHED_RESET_ON_FORK, &parameters) == 0;
}

/// RealtimeKit refuses a process without the bounds.
void askForRight() {
  const QDBusConnection bus = QDBusConnection::systemBus();
  if (!bus.isConnected()) return;
  QDBusMessage call = QDBusMessage::createMethodCall(
      "org.freedesktop.RealtimeKit1", "/org/freedesktop/RealtimeKit1",
      "org.freedesktop.RealtimeKit1", "MakeThreadRealtime");
  call << static_cast<qulonglong>(::gettid()) << priority;
  auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), qApp);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher] {
    watcher->deleteLater();
    // The answer may come when the macro has been stopped already.
    if (scheduledTimers == 0) leaveRealTime();
  });
}

void update() {
  if (!isUsed) return;
  if (scheduledTimers == 0) return leaveRealTime();
  if (!enterRealTime()) askForRight();
}

}  // namespace

void useRealTime() {
  isUsed = true;
  update();
}

void realTimeTimerWasScheduled() {
  if (++scheduledTimers == 1) update();
}

void realTimeTimerEnded() {
  if (--scheduledTimers == 0) update();
}

bool enterRealTime() {
  return setBounds() && setPolicy(SCHED_RR, priority);
}

void leaveRealTime() {
  if ((::sched_getscheduler(0) & ~SCHED_RESET_ON_FORK) == SCHED_RR) setPolicy(SCHED_OTHER, 0);
}

}  // namespace vorrin
