#pragma once

#include <QDBusMessage>
#include <QObject>

#include "platform/linux/session/session_presence.h"

namespace vorrin {

/// Listens to the screen savers of the desktops on the session bus and tells `presence`, which has
/// to outlive it, when one hides the screen. Where there is no bus or no screen saver it hears
/// nothing, silently; none is started by it.
class ScreenSavers : public QObject {
  Q_OBJECT

 public:
  explicit ScreenSavers(SessionPresence& presence);

 private:
  Q_SLOT void activeChanged(bool isActive, const QDBusMessage& signal);

  SessionPresence& presence_;
};

}  // namespace vorrin
