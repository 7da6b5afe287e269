#pragma once

#include <QDBusConnection>
#include <QObject>
#include <optional>

#include "platform/linux/session/lasting_bus.h"

namespace vorrin {

/// While a timer of the mode `common` is scheduled, has the kernel run the main thread in real
/// time: on a machine that computes something else on every processor, a thread with ordinary
/// priority comes too late for one click in five at 1 ms. Taken by this process's own right where
/// it has one, otherwise asked of RealtimeKit on the system bus, which gives it to users in front
/// of the machine. Refused, or without that service, everything goes on as it is, silently. Made on
/// the main thread.
class TimelyThread : public QObject {
  Q_OBJECT

 public:
  TimelyThread();
  ~TimelyThread() override;

 private:
  void setNeeded(bool isNeeded);
  void askForRealTime();

  LastingBus lastingBus_{QDBusConnection::SystemBus};
  std::optional<QDBusConnection> bus_;
  bool isNeeded_ = false;
};

}  // namespace vorrin
