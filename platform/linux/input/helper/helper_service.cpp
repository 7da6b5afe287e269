#include "platform/linux/input/helper/helper_service.h"

#include <fcntl.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <limits>

#include "input_helper/protocol/protocol.h"

namespace vorrin::helper {
namespace {

constexpr const char* service = "org.vorrin.InputHelper";
constexpr const char* path = "/org/vorrin/InputHelper";

/// Without a question to the user.
constexpr int answerMilliseconds = 5000;

Reply read(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ReplyMessage) return {reply.errorMessage().toStdString(), {}};
  const auto socket = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
  return {{}, FileDescriptor(::fcntl(socket.fileDescriptor(), F_DUPFD_CLOEXEC, 0))};
}

void call(QObject& receiver, const char* method, bool mayAsk, std::function<void(Reply)> answered,
          bool mayRepeat) {
  auto message = QDBusMessage::createMethodCall(service, path, service, method);
  message.setInteractiveAuthorizationAllowed(mayAsk);
  const int limit = mayAsk ? std::numeric_limits<int>::max() : answerMilliseconds;
  auto* const watcher = new QDBusPendingCallWatcher(
      QDBusConnection::systemBus().asyncCall(message, limit), &receiver);
  QObject::connect(
      watcher, &QDBusPendingCallWatcher::finished, &receiver,
      [=, &receiver, answered = std::move(answered)](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        const QDBusMessage reply = finished->reply();
        // A helper that nobody used may have ended as it was called; the bus starts another.
        const bool isLost = reply.errorName() == "org.freedesktop.DBus.Error.NoReply";
        if (isLost && mayRepeat) return call(receiver, method, mayAsk, answered, false);
        answered(read(reply));
      });
}

}  // namespace

void callHelper(QObject& receiver, const char* method, bool mayAsk,
                std::function<void(Reply)> answered) {
  call(receiver, method, mayAsk, std::move(answered), true);
}

}  // namespace vorrin::helper
