#include "platform/linux/widgets/launch_environment.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <cstdio>
#include <cstdlib>

#include "platform/linux/session/unresponsive_buses.h"

namespace vorrin {

namespace {

QtMessageHandler nextHandler = nullptr;

/// The first complaint of the part that reaches for the display.
QString& displayComplaint() {
  static QString complaint;
  return complaint;
}

void preset(const char* variable, const QByteArray& value) {
  if (!qEnvironmentVariableIsSet(variable)) qputenv(variable, value);
}

bool isAnyDisplayNamed() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

[[noreturn]] void endWithoutDisplay(const QString& message) {
  if (!isAnyDisplayNamed()) {
    std::fputs("vorrin: no display · start Vorrin from within a graphical session\n", stderr);
  } else {
    const QString& reason = displayComplaint().isEmpty() ? message : displayComplaint();
    std::fprintf(stderr, "vorrin: no display · %s\n", qPrintable(reason.section('\n', 0, 0)));
  }
  // Nothing was started that would have to be cleaned up, and much is only half made.
  std::_Exit(EXIT_FAILURE);
}

/// The library ends the process by abort() when it finds no display; its user made no mistake that
/// would be worth a core dump.
/// What it says on the way there is either summed up by that one line or about a way not taken.
void watchStart(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  const bool isAboutDisplay = QLatin1String(context.category).startsWith(QLatin1String("qt.qpa"));
  if (type == QtFatalMsg) endWithoutDisplay(message);
  if (type == QtDebugMsg) {
    nextHandler(type, context, message);
  } else if (type == QtWarningMsg && isAboutDisplay && displayComplaint().isEmpty()) {
    displayComplaint() = message;
  }
}

}  // namespace

LaunchEnvironment::LaunchEnvironment(bool needsDisplay) {
  // Vorrin draws nothing by OpenGL; its libraries would be the larger part of the memory in use.
  preset("QT_XCB_GL_INTEGRATION", "none");
  // The library's own event loop wakes up with less work than the one built on GLib.
  preset("QT_NO_GLIB", "1");
  // Desktop themes load a second toolkit. Colours and shapes are Vorrin's own here anyway.
  preset("QT_QPA_PLATFORMTHEME", "generic");
  // The library asks the bus who has a name without looking whether the bus is still there, and the
  // one below it ends the process for that unless told otherwise.
  preset("DBUS_FATAL_WARNINGS", "0");
  leaveOutUnresponsiveBuses();
  if (!needsDisplay) preset("QT_QPA_PLATFORM", "offscreen");
  nextHandler = qInstallMessageHandler(watchStart);
}

LaunchEnvironment::~LaunchEnvironment() {
  qInstallMessageHandler(nextHandler);
  displayComplaint().clear();
}

}  // namespace vorrin
