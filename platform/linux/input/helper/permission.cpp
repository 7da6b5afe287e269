#include "platform/linux/input/helper/permission.h"

#include <unistd.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QMap>
#include <QTimer>
#include <QVariantMap>
#include <utility>

namespace vorrin::helper {
namespace {

constexpr int answerMilliseconds = 5000;

struct Subject {
  QString kind;
  QVariantMap details;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Subject& subject) {
  argument.beginStructure();
  argument << subject.kind << subject.details;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Subject& subject) {
  argument.beginStructure();
  argument >> subject.kind >> subject.details;
  argument.endStructure();
  // The signature is the library's.
  // NOLINTNEXTLINE(bugprone-return-const-ref-from-parameter)
  return argument;
}

/// In the unit of /proc; tells this process from a later one of the same number.
qulonglong startOfThisProcess() {
  QFile file("/proc/self/stat");
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const QByteArray text = file.readAll();
  // The second field, a name in brackets, may hold anything; the start is the twenty-second.
  const auto fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
  return fields.size() > 19 ? fields[19].toULongLong() : 0;
}

QDBusMessage question() {
  auto call = QDBusMessage::createMethodCall(
      "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
      "org.freedesktop.PolicyKit1.Authority", "CheckAuthorization");
  const Subject subject{"unix-process",
                        {{"pid", QVariant::fromValue<uint>(static_cast<uint>(::getpid()))},
                         {"start-time", QVariant::fromValue<qulonglong>(startOfThisProcess())}}};
  const QMap<QString, QString> noDetails;
  constexpr uint noInteraction = 0;
  call << QVariant::fromValue(subject) << QString(permissionAction)
       << QVariant::fromValue(noDetails) << noInteraction << QString();
  return call;
}

bool isYes(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return false;
  const auto result = reply.arguments().constFirst().value<QDBusArgument>();
  bool authorized = false;
  result.beginStructure();
  result >> authorized;
  // Without this the library keeps what it reads with for ever.
  result.endStructure();
  return authorized;
}

/// A connection of its own, made anew where the bus ended: the library's own would stay dead.
QDBusConnection systemBus() {
  const QString name = "vorrin-permission";
  QDBusConnection former(name);
  if (former.isConnected()) return former;
  QDBusConnection::disconnectFromBus(name);
  return QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
}

}  // namespace
}  // namespace vorrin::helper

Q_DECLARE_METATYPE(vorrin::helper::Subject)

namespace vorrin::helper {

void askPermission(QObject& receiver, std::function<void(bool)> answered) {
  qDBusRegisterMetaType<Subject>();
  qDBusRegisterMetaType<QMap<QString, QString>>();
  const auto bus = systemBus();
  if (!bus.isConnected()) {
    // A call would never be answered.
    QTimer::singleShot(0, &receiver, [answered = std::move(answered)] { answered(false); });
    return;
  }
  auto* const watcher =
      new QDBusPendingCallWatcher(bus.asyncCall(question(), answerMilliseconds), &receiver);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &receiver,
                   [answered = std::move(answered)](QDBusPendingCallWatcher* finished) {
                     finished->deleteLater();
                     answered(isYes(finished->reply()));
                   });
}

}  // namespace vorrin::helper
