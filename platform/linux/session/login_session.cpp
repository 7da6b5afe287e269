#include "platform/linux/session/login_session.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QTimer>
#include <chrono>
#include <functional>

namespace vorrin {

namespace {

constexpr auto service = "org.freedesktop.login1";
constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";
constexpr auto sessionInterface = "org.freedesktop.login1.Session";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr auto active = "Active";
constexpr auto lockedHint = "LockedHint";
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

LoginSession::LoginSession(SessionPresence& presence, std::function<void()> willSleep)
    : presence_(presence), willSleep_(std::move(willSleep)), bus_(QString()) {
  // The manager may be started anew, with an update for instance.
  arrivals_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
  arrivals_.addWatchedService(service);
  connect(&arrivals_, &QDBusServiceWatcher::serviceRegistered, this, [this] { greetManager(); });
  // Reaching for the bus may take a while; the window comes first.
  QTimer::singleShot(0, this, [this] {
    listenOn(lastingBus_.reach([this](const QDBusConnection& bus) { listenOn(bus); }));
  });
}

void LoginSession::listenOn(const QDBusConnection& bus) {
  if (!bus.isConnected()) return;
  bus_ = bus;
  arrivals_.setConnection(bus);
  bus_.connect(service, managerPath, managerInterface, "PrepareForSleep", this,
               SLOT(prepareForSleep(bool)));
  greetManager();
}

void LoginSession::greetManager() {
  delaySleep();
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
  bus_.connect(service, sessionPath, sessionInterface, "Lock", this, SLOT(lockRequested()));
  bus_.connect(service, sessionPath, sessionInterface, "Unlock", this, SLOT(unlockRequested()));
  bus_.connect(service, sessionPath, propertiesInterface, "PropertiesChanged", this,
               SLOT(sessionChanged(QString, QVariantMap)));
  // Whether the session is on the screen at the start is not asked: it is where the user started
  // the program, or another one that the program was started from by detours.
  QDBusMessage call =
      QDBusMessage::createMethodCall(service, sessionPath, propertiesInterface, "Get");
  call << QString(sessionInterface) << QString(lockedHint);
  callAsync(bus_, *this, call, [this](const QDBusPendingReply<QDBusVariant>& isLocked) {
    if (!isLocked.isError()) presence_.setLocked(service, isLocked.value().variant().toBool());
  });
}

void LoginSession::delaySleep() {
  QDBusMessage call =
      QDBusMessage::createMethodCall(service, managerPath, managerInterface, "Inhibit");
  call << QStringLiteral("sleep") << QStringLiteral("Vorrin")
       << QStringLiteral("Both macros are stopped first") << QStringLiteral("delay");
  callAsync(bus_, *this, call, [this](const QDBusPendingReply<QDBusUnixFileDescriptor>& delay) {
    if (!delay.isError()) sleepDelay_ = delay.value();
  });
}

void LoginSession::prepareForSleep(bool begins) {
  if (begins) {
    if (willSleep_) willSleep_();
    sleepDelay_ = {};
  } else {
    delaySleep();
  }
}

void LoginSession::lockRequested() {
  presence_.lockWasRequested(std::chrono::steady_clock::now());
}

void LoginSession::unlockRequested() {
  presence_.unlockWasRequested();
}

void LoginSession::sessionChanged(const QString& interface, const QVariantMap& changed) {
  if (interface != QLatin1String(sessionInterface)) return;
  if (changed.contains(active)) presence_.setOnScreen(changed.value(active).toBool());
  if (changed.contains(lockedHint)) {
    presence_.setLocked(service, changed.value(lockedHint).toBool());
  }
}

}  // namespace vorrin
