#include "platform/linux/session/login_session.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

namespace vorrin {

namespace {

constexpr auto service = "org.freedesktop.login1";
constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";
constexpr auto sessionInterface = "org.freedesktop.login1.Session";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr auto active = "Active";
constexpr auto lockedHint = "LockedHint";

/// Calls a method and hands its value to `answered`, unless it fails or `receiver` dies first.
template <class Value>
void call(const QDBusConnection& bus, QObject& receiver, QDBusMessage message,
          const QVariantList& arguments, std::function<void(const Value&)> answered) {
  message.setArguments(arguments);
  auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), &receiver);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &receiver,
                   [watcher, answered = std::move(answered)] {
                     watcher->deleteLater();
                     const QDBusPendingReply<Value> reply = *watcher;
                     if (!reply.isError()) answered(reply.value());
                   });
}

QDBusMessage managerCall(const char* method) {
  return QDBusMessage::createMethodCall(service, managerPath, managerInterface, method);
}

}  // namespace

LoginSession::LoginSession(SessionPresence& presence, Requests requests)
    : presence_(presence), requests_(std::move(requests)), bus_(QDBusConnection::systemBus()) {
  if (!bus_.isConnected()) return;
  bus_.connect(service, managerPath, managerInterface, "PrepareForSleep", this,
               SLOT(prepareForSleep(bool)));
  delaySleep();
  findSession();
}

void LoginSession::delaySleep() {
  call<QDBusUnixFileDescriptor>(
      bus_, *this, managerCall("Inhibit"),
      {"sleep", "Vorrin", "Both macros are stopped first", "delay"},
      [this](const QDBusUnixFileDescriptor& delay) { sleepDelay_ = delay; });
}

void LoginSession::findSession() {
  // The caller's own or, for programs that the user's service manager started, which belong to
  // none, the one on the user's display. Signals come under its own name only, never under this.
  call<QDBusObjectPath>(bus_, *this, managerCall("GetSession"), {"auto"},
                        [this](const QDBusObjectPath& session) { watch(session.path()); });
}

void LoginSession::watch(const QString& sessionPath) {
  bus_.connect(service, sessionPath, sessionInterface, "Lock", this, SLOT(lockRequested()));
  bus_.connect(service, sessionPath, propertiesInterface, "PropertiesChanged", this,
               SLOT(sessionChanged(QString, QVariantMap)));
  // Whether the session is on the screen at the start is not asked: it is where the user started
  // the program, or another one that the program was started from by detours.
  call<QDBusVariant>(
      bus_, *this, QDBusMessage::createMethodCall(service, sessionPath, propertiesInterface, "Get"),
      {sessionInterface, lockedHint}, [this](const QDBusVariant& isLocked) {
        presence_.setLocked(service, isLocked.variant().toBool());
      });
}

void LoginSession::prepareForSleep(bool begins) {
  if (!begins) return delaySleep();
  if (requests_.sleep) requests_.sleep();
  sleepDelay_ = {};
}

void LoginSession::lockRequested() {
  if (requests_.lock) requests_.lock();
}

void LoginSession::sessionChanged(const QString& interface, const QVariantMap& changed) {
  if (interface != QLatin1String(sessionInterface)) return;
  if (changed.contains(active)) presence_.setOnScreen(changed.value(active).toBool());
  if (changed.contains(lockedHint)) {
    presence_.setLocked(service, changed.value(lockedHint).toBool());
  }
}

}  // namespace vorrin
