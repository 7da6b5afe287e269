#pragma once

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QVariantMap>
#include <functional>

#include "platform/linux/session/session_presence.h"

namespace vorrin {

/// Listens to systemd's login manager on the system bus: the machine going to sleep, and this
/// session being locked or switched away, which it tells `presence`. Without a bus or a manager it
/// hears nothing, silently.
class LoginSession : public QObject {
  Q_OBJECT

 public:
  struct Requests {
    std::function<void()> sleep;  ///< about to sleep; the machine waits until this has returned
    std::function<void()> lock;   ///< somebody is to lock the screen, and may take a while
  };

  /// `presence` has to outlive this object.
  LoginSession(SessionPresence& presence, Requests requests);

 private:
  Q_SLOT void prepareForSleep(bool begins);
  Q_SLOT void lockRequested();
  Q_SLOT void sessionChanged(const QString& interface, const QVariantMap& changed);

  void delaySleep();
  void findSession();
  void watch(const QString& sessionPath);

  SessionPresence& presence_;
  Requests requests_;
  /// While it is open, the machine lets this program prepare for sleep first.
  QDBusUnixFileDescriptor sleepDelay_;
  QDBusConnection bus_;
};

}  // namespace vorrin
