#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include "platform/workspace.h"

namespace vorrin {

/// Listens to systemd's login manager on the system bus: the machine going to sleep, and this
/// session being locked or switched away. Without a bus or a manager it hears nothing, silently.
class LoginSession : public QObject {
  Q_OBJECT

 public:
  explicit LoginSession(WorkspaceNotifications notifications);

 private slots:
  void prepareForSleep(bool begins);
  void sessionLocked();
  void sessionChanged(const QString& interface, const QVariantMap& changed);

 private:
  void connectToBus();
  /// Finds the session of this process; programs that the user's service manager started belong to
  /// none and take the one that the environment or, failing that, the manager names.
  void findSession();
  void findSessionOfEnvironment();
  void findDisplaySession();
  void findSessionById(const QString& id);
  void watch(const QString& sessionPath);
  void resign() const;

  WorkspaceNotifications notifications_;
  QDBusConnection bus_;
};

}  // namespace vorrin
