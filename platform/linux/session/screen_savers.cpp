#include "platform/linux/session/screen_savers.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>
#include <array>

namespace vorrin {

namespace {

struct ScreenSaver {
  const char* name;  ///< on the bus, and of its interface
  const char* path;
};

constexpr std::array screenSavers = {
    ScreenSaver{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
    ScreenSaver{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
    ScreenSaver{"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
    ScreenSaver{"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
    ScreenSaver{"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"},
};

}  // namespace

ScreenSavers::ScreenSavers(SessionPresence& presence) : presence_(presence) {
  // One that is killed cannot say any more that it has left the screen.
  departures_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
  connect(&departures_, &QDBusServiceWatcher::serviceUnregistered, this,
          [this](const QString& name) { presence_.setLocked(name.toStdString(), false); });
  for (const auto& [name, path] : screenSavers) departures_.addWatchedService(name);
  QTimer::singleShot(0, this, [this] {
    listenOn(lastingBus_.reach([this](const QDBusConnection& bus) { listenOn(bus); }));
  });
}

void ScreenSavers::listenOn(QDBusConnection bus) {
  if (!bus.isConnected()) return;
  departures_.setConnection(bus);
  for (const auto& [name, path] : screenSavers) {
    // One on a bus that has ended cannot say any more that it has left the screen.
    presence_.setLocked(name, false);
    // Some tell it at other paths than this one too.
    const QString anyPath;
    bus.connect(name, anyPath, name, "ActiveChanged", this,
                SLOT(activeChanged(bool, QDBusMessage)));
    askWhetherActive(bus, name, path);
  }
}

void ScreenSavers::askWhetherActive(const QDBusConnection& bus, const QString& name,
                                    const QString& path) {
  QDBusMessage call = QDBusMessage::createMethodCall(name, path, name, "GetActive");
  call.setAutoStartService(false);
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, name, watcher] {
    watcher->deleteLater();
    const QDBusPendingReply<bool> isActive = *watcher;
    if (!isActive.isError() && isActive.value()) presence_.setLocked(name.toStdString(), true);
  });
}

void ScreenSavers::activeChanged(bool isActive, const QDBusMessage& signal) {
  presence_.setLocked(signal.interface().toStdString(), isActive);
}

}  // namespace vorrin
