#include "platform/linux/input/helper/connection.h"

#include <utility>

namespace vorrin::helper {

using namespace helper_protocol;

Connection::Connection(FileDescriptor socket, Handlers handlers)
    : socket_(std::move(socket)),
      handlers_(std::move(handlers)),
      notifier_(new QSocketNotifier(socket_.number(), QSocketNotifier::Read)) {
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { read(); });
}

bool Connection::send(const ToHelper& message) const {
  return sendPacket(socket_.number(), encode(message));
}

void Connection::read() {
  // A handler may end this connection, and with it what is called.
  const std::weak_ptr<bool> alive = alive_;
  const Handlers handlers = handlers_;
  Packet packet;
  while (!alive.expired()) {
    const auto received = receivePacket(socket_.number(), packet);
    if (received == Received::nothing) return;
    const auto message =
        received == Received::packet ? decodeFromHelper(packet.view()) : std::nullopt;
    if (message) {
      handlers.received(*message);
      continue;
    }
    notifier_->setEnabled(false);
    handlers.lost(received == Received::packet);
    return;
  }
}

}  // namespace vorrin::helper
