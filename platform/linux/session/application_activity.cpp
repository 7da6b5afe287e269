#include "platform/application_activity.h"

#include <QGuiApplication>

namespace vorrin {

bool applicationIsActive() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
         QGuiApplication::applicationState() == Qt::ApplicationActive;
}

void observeApplicationActivity(std::function<void()> changed) {
  static QMetaObject::Connection connection;
  QObject::disconnect(connection);
  if (!changed || qGuiApp == nullptr) return;
  connection =
      QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, qGuiApp,
                       [changed = std::move(changed)](Qt::ApplicationState) { changed(); });
}

}  // namespace vorrin
