#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>

namespace vorrin {

/// A message bus that may end and come back, as with an update of its program: the widget library's
/// own connections to a bus that has ended stay dead.
class LastingBus : public QObject {
  Q_OBJECT

 public:
  explicit LastingBus(QDBusConnection::BusType type) : type_(type) {}

  /// Reaches for the bus; the connection is not connected when there is none. Should the bus end,
  /// `cameBack` is called with another connection each time it is there again.
  QDBusConnection reach(std::function<void(const QDBusConnection&)> cameBack);

 private:
  Q_SLOT void lost();
  void watch(QDBusConnection bus);
  void reachAgain();

  QDBusConnection::BusType type_;
  std::function<void(const QDBusConnection&)> cameBack_;
};

}  // namespace vorrin
