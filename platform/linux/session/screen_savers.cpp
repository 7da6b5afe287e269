#include "platform/linux/session/screen_savers.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
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
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  // One that is killed cannot say any more that it has left the screen.
  auto* const departures = new QDBusServiceWatcher(this);
  departures->setConnection(bus);
  departures->setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
  connect(departures, &QDBusServiceWatcher::serviceUnregistered, this,
          [this](const QString& name) { presence_.setScreenSaver(name.toStdString(), false); });
  for (const auto& [name, path] : screenSavers) {
    departures->addWatchedService(name);
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
  auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, name, watcher] {
    watcher->deleteLater();
    const QDBusPendingReply<bool> isActive = *watcher;
    if (!isActive.isError() && isActive.value()) presence_.setScreenSaver(name.toStdString(), true);
  });
}

void ScreenSavers::activeChanged(bool isActive, const QDBusMessage& signal) {
  presence_.setScreenSaver(signal.interface().toStdString(), isActive);
}

}  // namespace vorrin
