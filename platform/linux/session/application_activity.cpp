#include "platform/application_activity.h"

#include <QGuiApplication>
#include <QPointer>
#include <utility>

#include "platform/linux/session/focus_watch.h"
#include "platform/linux/session/late_keyboard_map.h"

namespace vorrin {

namespace {

/// The watch of the present application, whose child it is.
QPointer<FocusWatch>& focusWatch() {
  static QPointer<FocusWatch> watch;
  return watch;
}

}  // namespace

bool applicationIsActive() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
         QGuiApplication::applicationState() == Qt::ApplicationActive &&
         (focusWatch().isNull() || !focusWatch()->isFocusElsewhere());
}

void observeApplicationActivity(std::function<void()> changed) {
  delete focusWatch();
  if (!changed || qGuiApp == nullptr) return;
  auto* const map = new LateKeyboardMap(applicationIsActive);
  const auto tell = [map, changed = std::move(changed)] {
    map->update();
    changed();
  };
  focusWatch() = new FocusWatch(tell);
  map->setParent(focusWatch());
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, focusWatch(), tell);
}

}  // namespace vorrin
