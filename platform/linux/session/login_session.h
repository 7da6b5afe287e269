#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QVariantMap>
#include <functional>

#include "platform/linux/session/lasting_bus.h"
#include "platform/linux/session/session_presence.h"

namespace vorrin {

/// Listens to systemd's login manager on the system bus: the machine going to sleep, and this
/// session being locked or switched away, which it tells `presence`. Without a bus or a manager it
/// hears nothing, silently; it hears what comes back.
class LoginSession : public QObject {
  Q_OBJECT

 public:
  /// `presence` has to outlive this object. `willSleep` is called before the machine sleeps, and
  /// the machine waits until it has returned; it may be empty.
  LoginSession(SessionPresence& presence, std::function<void()> willSleep);

 private:
  Q_SLOT void prepareForSleep(bool begins);
  Q_SLOT void lockRequested();
  Q_SLOT void unlockRequested();
  Q_SLOT void sessionChanged(const QString& interface, const QVariantMap& changed);

  void listenOn(const QDBusConnection& bus);
  void greetManager();
  /// Finds the session of this process; programs that the user's service manager started belong to
  /// none and take the one that the environment or, failing that, the manager names.
  void findSession();
  void findSessionOfEnvironment();
  void findDisplaySession();
  void findSessionById(const QString& id);
  void watch(const QString& sessionPath);
  void delaySleep();

  SessionPresence& presence_;
  std::function<void()> willSleep_;
  /// While it is open, the machine lets this program prepare for sleep first.
  QDBusUnixFileDescriptor sleepDelay_;
  LastingBus lastingBus_{QDBusConnection::SystemBus};
  QDBusConnection bus_;
  QDBusServiceWatcher arrivals_;
};

}  // namespace vorrin
