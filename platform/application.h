#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/menu.h"

namespace vorrin {

/// What the application tells its delegate; each closure runs on the main thread.
struct ApplicationDelegate {
  std::function<void()> didFinishLaunching;
  /// The user asked for the program again while it runs; the argument says whether a window is
  /// visible.
  std::function<bool(bool hasVisibleWindows)> shouldHandleReopen;
  /// The user chose, at the program's icon in the desktop, to stop both macros.
  std::function<void()> stopAll;
  /// After the last window was closed; true ends the application.
  std::function<bool()> shouldTerminateAfterLastWindowClosed;
  std::function<void()> willTerminate;
};

/// The application object. There is one; it is made at entry and lives until the process ends.
class Application {
 public:
  /// Makes the object from the command line. Ends the process with a message when the system has no
  /// display, unless the arguments hold "--ui-test", which needs none.
  Application(int& argumentCount, char** arguments);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  void setDelegate(ApplicationDelegate delegate);

  /// Finishes launching, then serves events until `terminate`. The result is the exit status. When
  /// the program runs already in the user's session, that one is asked to reopen and the result is
  /// 0 at once, with nothing launched.
  int run();

  /// Ends the application after telling the delegate.
  static void terminate();

  /// The menus of the main menu, the application's own first.
  static void setMainMenu(const std::vector<Menu>& menus);

  /// Takes the program's icon if there is one. A missing icon is not an error.
  static void loadIcon();

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace vorrin
