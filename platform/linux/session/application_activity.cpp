#include "platform/application_activity.h"

#include <QGuiApplication>
#include <QPointer>
#include <utility>

namespace vorrin {

bool applicationIsActive() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
         QGuiApplication::applicationState() == Qt::ApplicationActive;
}

void observeApplicationActivity(std::function<void()> changed) {
  static QPointer<QObject> observation;
  delete observation;
  if (!changed || qGuiApp == nullptr) return;
  observation = new QObject(qGuiApp);
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, observation,
                   std::move(changed));
}

}  // namespace vorrin
