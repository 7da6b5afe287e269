#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>

namespace vorrin {

/// What another start of the program, or the desktop, asks of the one that runs.
struct InstanceRequests {
  std::function<void()> reopen;   ///< show the window
  std::function<void()> stopAll;  ///< stop both macros
};

/// The program's place on the session's message bus: a name that only one process at a time has,
/// and the standard interface behind it by which desktops start and control applications. Without a
/// bus every process counts as the first and nothing is ever asked of it.
class SingleInstance : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  explicit SingleInstance(InstanceRequests requests);

  /// Whether this process is the first and should go on. If not, the first has been asked to show
  /// its window; one that is busy does so later, and is waited for no longer than two seconds.
  [[nodiscard]] bool claim();

  // The names and types are those of the interface on the bus.
  // NOLINTBEGIN(readability-identifier-naming)
  Q_SLOT void Activate(const QVariantMap& platformData);
  Q_SLOT void Open(const QStringList& addresses, const QVariantMap& platformData);
  Q_SLOT void ActivateAction(const QString& name, const QVariantList& parameters,
                             const QVariantMap& platformData);
  // NOLINTEND(readability-identifier-naming)

 private:
  InstanceRequests requests_;
};

}  // namespace vorrin
