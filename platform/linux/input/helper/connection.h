#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "input_helper/protocol/packet_socket.h"

namespace vorrin::helper {

/// This program's end of a connection to a helper.
class Connection {
 public:
  struct Handlers {
    std::function<void(const helper_protocol::FromHelper&)> received;
    /// The other end is gone or broke the protocol (then with `broken` set); nothing follows. The
    /// call may make the connection go away.
    std::function<void(bool broken)> lost;
  };

  Connection(helper_protocol::FileDescriptor socket, Handlers handlers);

  /// False when the helper cannot take it: it is gone, or far behind. Does not allocate.
  [[nodiscard]] bool send(const helper_protocol::ToHelper& message) const;

 private:
  void read();

  helper_protocol::FileDescriptor socket_;
  Handlers handlers_;
  /// Not deleted at once: it may be telling of the very message that ends the connection.
  struct DeleteLater {
    void operator()(QSocketNotifier* notifier) const {
      notifier->setEnabled(false);
      notifier->deleteLater();
    }
  };

  std::unique_ptr<QSocketNotifier, DeleteLater> notifier_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace vorrin::helper
