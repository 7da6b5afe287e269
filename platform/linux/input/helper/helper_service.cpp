#include "platform/linux/input/helper/helper_service.h"

#include <fcntl.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <limits>

namespace vorrin::helper {
namespace {

constexpr const char* service = "org.vorrin.InputHelper";
constexpr const char* path = "/org/vorrin/InputHelper";

/// Without a question to the user.
constexpr int answerMilliseconds = 5000;

/// A connection of its own, made anew where the bus ended: the library's own would stay dead. The
/// helper serves its owner as long as it lasts.
QDBusConnection systemBus() {
  const QString name = "vorrin-input-helper";
  QDBusConnection former(name);
  if (former.isConnected()) return former;
  QDBusConnection::disconnectFromBus(name);
  return QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
}

void call(QObject& receiver, const char* method, bool mayAsk,
          std::function<void(const QDBusMessage&)> answered, bool mayRepeat = true) {
  auto message = QDBusMessage::createMethodCall(service, path, service, method);
  message.setInteractiveAuthorizationAllowed(mayAsk);
  const int limit = mayAsk ? std::numeric_limits<int>::max() : answerMilliseconds;
  auto* const watcher =
      new QDBusPendingCallWatcher(systemBus().asyncCall(message, limit), &receiver);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &receiver,
                   [=, &receiver](QDBusPendingCallWatcher* finished) {
                     finished->deleteLater();
                     const QDBusMessage reply = finished->reply();
                     // A helper that nobody used may have ended as it was called; the bus starts
                     // another.
                     const bool isLost = reply.errorName() == "org.freedesktop.DBus.Error.NoReply";
                     if (isLost && mayRepeat)
                       return call(receiver, method, mayAsk, answered, false);
                     answered(reply);
                   });
}

Connected connectedBy(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ReplyMessage) return {{}, reply.errorMessage().toStdString()};
  const auto socket = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
  return {FileDescriptor(::fcntl(socket.fileDescriptor(), F_DUPFD_CLOEXEC, 0)), {}};
}

}  // namespace

HelperService helperOnSystemBus() {
  return {.connect =
              [](QObject& receiver, bool mayAsk, std::function<void(Connected)> answered) {
                call(receiver, "Connect", mayAsk,
                     [answered = std::move(answered)](const QDBusMessage& reply) {
                       answered(connectedBy(reply));
                     });
              },
          .decide =
              [](QObject& receiver, const char* wish, std::function<void(bool)> answered) {
                call(receiver, wish, true,
                     [answered = std::move(answered)](const QDBusMessage& reply) {
                       answered(reply.type() == QDBusMessage::ReplyMessage);
                     });
              }};
}

}  // namespace vorrin::helper
