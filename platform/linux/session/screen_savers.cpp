#include "platform/linux/session/screen_savers.h"

#include <QDBusConnection>

namespace vorrin {

namespace {

/// Their names on the bus, and of their interfaces.
constexpr const char* screenSavers[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                        "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver",
                                        "org.xfce.ScreenSaver"};

}  // namespace

ScreenSavers::ScreenSavers(SessionPresence& presence) : presence_(presence) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  for (const char* const name : screenSavers) {
    const QString anyPath;
    bus.connect(name, anyPath, name, "ActiveChanged", this,
                SLOT(activeChanged(bool, QDBusMessage)));
  }
}

void ScreenSavers::activeChanged(bool isActive, const QDBusMessage& signal) {
  presence_.setScreenSaver(signal.interface().toStdString(), isActive);
}

}  // namespace vorrin
