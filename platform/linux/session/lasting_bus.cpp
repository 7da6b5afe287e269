#include "platform/linux/session/lasting_bus.h"

#include <QTimer>
#include <utility>

#include "platform/linux/session/silent_buses.h"

namespace vorrin {

namespace {

constexpr int pauseMilliseconds = 1000;

bool isSystem(QDBusConnection::BusType type) {
  return type == QDBusConnection::SystemBus;
}

QString newName() {
  static int count = 0;
  return "vorrin-" + QString::number(++count);
}

}  // namespace

QDBusConnection LastingBus::reach(std::function<void(const QDBusConnection&)> cameBack) {
  cameBack_ = std::move(cameBack);
  const QDBusConnection bus =
      isSystem(type_) ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
  if (bus.isConnected()) watch(bus);
  return bus;
}

void LastingBus::watch(QDBusConnection bus) {
  // A signal that the library makes itself.
  bus.connect(QString(), "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local",
              "Disconnected", this, SLOT(lost()));
}

void LastingBus::lost() {
  QTimer::singleShot(pauseMilliseconds, this, [this] { reachAgain(); });
}

void LastingBus::reachAgain() {
  const QString name = newName();
  if (isSystem(type_) ? systemBusMayAnswer() : sessionBusMayAnswer()) {
    const QDBusConnection bus = QDBusConnection::connectToBus(type_, name);
    if (bus.isConnected()) {
      watch(bus);
      return cameBack_(bus);
    }
    QDBusConnection::disconnectFromBus(name);
  }
  lost();
}

}  // namespace vorrin
