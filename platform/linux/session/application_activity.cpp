#include "platform/application_activity.h"

#include <QGuiApplication>
#include <QPointer>
#include <utility>

#include "platform/linux/session/late_keyboard_map.h"

namespace vorrin {

bool applicationIsActive() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
         QGuiApplication::applicationState() == Qt::ApplicationActive;
}

void observeApplicationActivity(std::function<void()> changed) {
  static QPointer<LateKeyboardMap> map;
  delete map;
  if (!changed || qGuiApp == nullptr) return;
  map = new LateKeyboardMap(applicationIsActive);
  map->setParent(qGuiApp);
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, map,
                   [changed = std::move(changed)] {
                     map->update();
                     changed();
                   });
}

}  // namespace vorrin
