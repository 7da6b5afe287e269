#include "platform/linux/session/login_session.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QTimer>
#include <functional>

namespace vorrin {

namespace {

constexpr auto service = "org.freedesktop.login1";
constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";
constexpr auto sessionInterface = "org.freedesktop.login1.Session";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr int answerMilliseconds = 5000;

/// Calls a method and hands its reply, or its error, to `answered`, unless `receiver` dies first.
void callAsync(const QDBusConnection& bus, QObject& receiver, const QDBusMessage& call,
               std::function<void(const QDBusPendingCall&)> answered) {
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, answerMilliseconds), &receiver);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &receiver,
                   [answered = std::move(answered)](QDBusPendingCallWatcher* finished) {
                     finished->deleteLater();
                     answered(*finished);
                   });
}

QDBusMessage managerCall(const QString& method, const QVariant& argument) {
  QDBusMessage call =
      QDBusMessage::createMethodCall(service, managerPath, managerInterface, method);
  call << argument;
  return call;
}

}  // namespace

LoginSession::LoginSession(WorkspaceNotifications notifications)
    : notifications_(std::move(notifications)), bus_(QString()) {
  // Reaching for the bus may take a while; the window comes first.
  QTimer::singleShot(0, this, [this] { connectToBus(); });
}

void LoginSession::connectToBus() {
  bus_ = QDBusConnection::systemBus();
  if (!bus_.isConnected()) return;
  bus_.connect(service, managerPath, managerInterface, "PrepareForSleep", this,
               SLOT(prepareForSleep(bool)));
  findSession();
}

void LoginSession::findSession() {
  constexpr uint callersOwn = 0;
  callAsync(bus_, *this, managerCall("GetSessionByPID", callersOwn),
            [this](const QDBusPendingReply<QDBusObjectPath>& session) {
              if (session.isError()) {
                findSessionOfEnvironment();
              } else {
                watch(session.value().path());
              }
            });
}

void LoginSession::findSessionOfEnvironment() {
  const QString id = qEnvironmentVariable("XDG_SESSION_ID");
  if (id.isEmpty()) {
    findDisplaySession();
  } else {
    findSessionById(id);
  }
}

void LoginSession::findDisplaySession() {
  // Signals come under the session's own name only, never under this one.
  QDBusMessage call = QDBusMessage::createMethodCall(
      service, "/org/freedesktop/login1/session/auto", propertiesInterface, "Get");
  call << QString(sessionInterface) << QStringLiteral("Id");
  callAsync(bus_, *this, call, [this](const QDBusPendingReply<QDBusVariant>& id) {
    if (!id.isError()) findSessionById(id.value().variant().toString());
  });
}

void LoginSession::findSessionById(const QString& id) {
  callAsync(bus_, *this, managerCall("GetSession", id),
            [this](const QDBusPendingReply<QDBusObjectPath>& session) {
              if (!session.isError()) watch(session.value().path());
            });
}

void LoginSession::watch(const QString& sessionPath) {
  bus_.connect(service, sessionPath, sessionInterface, "Lock", this, SLOT(sessionLocked()));
  bus_.connect(service, sessionPath, propertiesInterface, "PropertiesChanged", this,
               SLOT(sessionChanged(QString, QVariantMap)));
}

void LoginSession::prepareForSleep(bool begins) {
  if (begins && notifications_.willSleep) notifications_.willSleep();
}

void LoginSession::sessionLocked() {
  resign();
}

void LoginSession::sessionChanged(const QString& interface, const QVariantMap& changed) {
  if (interface != QLatin1String(sessionInterface)) return;
  const bool isSwitchedAway = changed.contains("Active") && !changed.value("Active").toBool();
  const bool isLocked = changed.value("LockedHint").toBool();
  if (isSwitchedAway || isLocked) resign();
}

void LoginSession::resign() const {
  if (notifications_.sessionDidResignActive) notifications_.sessionDidResignActive();
}

}  // namespace vorrin
