#include "platform/application_activity.h"

#include <QGuiApplication>
#include <QPointer>

#include "platform/linux/session/focus_watch.h"
#include "platform/linux/session/late_keyboard_map.h"

namespace vorrin {

namespace {

/// The watch of the present application, whose child it is.
QPointer<FocusWatch>& focusWatch() {
  static QPointer<FocusWatch> watch;
  return watch;
}

QPointer<LateKeyboardMap>& keyboardMap() {
  static QPointer<LateKeyboardMap> map;
  return map;
}

}  // namespace

bool applicationIsActive() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
         QGuiApplication::applicationState() == Qt::ApplicationActive &&
         (focusWatch().isNull() || !focusWatch()->isFocusElsewhere());
}

void observeApplicationActivity(std::function<void()> changed) {
  delete focusWatch();
  delete keyboardMap();
  if (!changed || qGuiApp == nullptr) return;
  const QPointer<LateKeyboardMap> map = new LateKeyboardMap(*qGuiApp, applicationIsActive);
  keyboardMap() = map;
  const auto tell = [map, changed = std::move(changed)] {
    if (map) map->update();
    changed();
  };
  focusWatch() = new FocusWatch(*qGuiApp, tell);
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, focusWatch(), tell);
}

}  // namespace vorrin
