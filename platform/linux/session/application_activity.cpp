#include "platform/application_activity.h"

#include <QGuiApplication>
#include <QPointer>

#include "platform/linux/session/focus_watch.h"

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
  focusWatch() = new FocusWatch(*qGuiApp, changed);
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, focusWatch(),
                   [changed = std::move(changed)](Qt::ApplicationState) { changed(); });
}

}  // namespace vorrin
