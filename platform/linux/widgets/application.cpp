#include "platform/application.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

#include "platform/linux/session/single_instance.h"
#include "platform/linux/time/real_time.h"
#include "platform/linux/widgets/accessible_window.h"
#include "platform/linux/widgets/activation_clicks.h"
#include "platform/linux/widgets/dark_style.h"
#include "platform/linux/widgets/launch_environment.h"
#include "platform/linux/widgets/main_menu.h"
#include "platform/linux/widgets/palette.h"
#include "platform/linux/widgets/termination_signals.h"
#include "platform/linux/widgets/toolkit_connection.h"

namespace vorrin {

namespace {

constexpr auto identifier = "org.vorrin.Vorrin";

bool holdsInterfaceTest(int argumentCount, char** arguments) {
  const std::span all(arguments, static_cast<std::size_t>(argumentCount));
  return std::any_of(all.begin(), all.end(),
                     [](std::string_view argument) { return argument == "--ui-test"; });
}

/// The icon in the sizes that window managers show. The pictures lie beside the program, in an
/// installation or in the build tree. To ask for the icon by its name would read the indexes of all
/// themes first. That of 256 pixels is left to the desktops' lists of programs, which read it
/// themselves: all that are given here are sent to the X server, and kept.
QIcon pictures() {
  QIcon icon;
  const QString folder = QApplication::applicationDirPath() + "/../share/icons/hicolor/";
  for (const char* const size : {"16x16", "24x24", "32x32", "48x48", "64x64", "128x128"}) {
    const QString picture = folder + size + "/apps/" + identifier + ".png";
    if (QFile::exists(picture)) icon.addFile(picture);
  }
  return icon;
}

}  // namespace

struct Application::Native {
  Native(int argumentCount, char** arguments);
  ~Native();
  Native(const Native&) = delete;
  Native& operator=(const Native&) = delete;

  void lastWindowClosed() const;
  void finishLaunching();
  void reopen() const;
  void stopAll() const;

  /// Only the program's name: all other arguments are Vorrin's own, and the widget library ends
  /// the process on some that it knows.
  int argumentCount = 1;
  const bool isInterfaceTest;
  std::optional<LaunchEnvironment> launch;  ///< while `application` is being made
  QApplication application;
  ActivationClicks activationClicks;
  QStyle* const style = new DarkStyle;  ///< `application` takes it over
  TerminationSignals terminationSignals;
  SingleInstance instance;
  ApplicationDelegate delegate;
  bool isLaunched = false;
};

Application::Native::Native(int count, char** arguments)
    : isInterfaceTest(holdsInterfaceTest(count, arguments)),
      launch(std::in_place, !isInterfaceTest),
      application(argumentCount, arguments),
      activationClicks(application),
      terminationSignals(&Application::terminate),
      instance({.reopen = [this] { reopen(); }, .stopAll = [this] { stopAll(); }}) {
  launch.reset();
  useRealTime();
  leaveOutNewsOfOthers();
  QApplication::setApplicationName(identifier);
  QApplication::setApplicationDisplayName("Vorrin");
  QApplication::setDesktopFileName(identifier);
  installAccessibleWindows();
  QApplication::setQuitOnLastWindowClosed(false);
  // A cursor that blinks wakes the process up all the time.
  QApplication::setCursorFlashTime(0);
  QApplication::setStyle(style);
  QApplication::setPalette(darkPalette());
  QApplication::setFont(nativeFont({12, FontWeight::regular, FontFamily::system}));
  QObject::connect(&application, &QApplication::lastWindowClosed, [this] { lastWindowClosed(); });
  QObject::connect(&application, &QApplication::aboutToQuit, [this] {
    if (delegate.willTerminate) delegate.willTerminate();
  });
}

Application::Native::~Native() {
  // Values of views may outlive the application, but no widget can.
  const QWidgetList widgets = QApplication::topLevelWidgets();
  for (const QPointer<QWidget>& widget : QList<QPointer<QWidget>>(widgets.begin(), widgets.end())) {
    if (widget && widget->parent() == nullptr) delete widget;
  }
}

void Application::Native::lastWindowClosed() const {
  const auto shouldTerminate = delegate.shouldTerminateAfterLastWindowClosed;
  if (shouldTerminate && shouldTerminate()) Application::terminate();
}

void Application::Native::finishLaunching() {
  if (delegate.didFinishLaunching) delegate.didFinishLaunching();
  isLaunched = true;
}

// Before the launch is finished there is neither a window nor a macro; the window is about to be
// shown anyway.

void Application::Native::reopen() const {
  if (!isLaunched || !delegate.shouldHandleReopen) return;
  const QWidgetList widgets = QApplication::topLevelWidgets();
  delegate.shouldHandleReopen(std::any_of(widgets.begin(), widgets.end(), [](QWidget* widget) {
    return widget->isVisible() && !widget->isMinimized();
  }));
}

void Application::Native::stopAll() const {
  if (isLaunched && delegate.stopAll) delegate.stopAll();
}

Application::Application(int& argumentCount, char** arguments)
    : native_(std::make_unique<Native>(argumentCount, arguments)) {}

Application::~Application() = default;

void Application::setDelegate(ApplicationDelegate delegate) {
  native_->delegate = std::move(delegate);
}

int Application::run() {
  if (!native_->isInterfaceTest && !native_->instance.claim()) return 0;
  QTimer::singleShot(0, &native_->application, [this] { native_->finishLaunching(); });
  return QApplication::exec();
}

void Application::terminate() {
  QApplication::exit();
}

void Application::setMainMenu(const std::vector<Menu>& menus) {
  rememberMainMenu(menus);
}

void Application::loadIcon() {
  // The window need not wait for it: to read the first picture, the library loads all it has for
  // pictures of any format.
  QTimer::singleShot(0, qApp, [] { QApplication::setWindowIcon(pictures()); });
}

}  // namespace vorrin
