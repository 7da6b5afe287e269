#include "bridge/keyboard_listener.h"
#include "bridge/program_engine.h"
#include "platform/workspace.h"
#include "ui/app.h"

namespace vorrin {

bool App::applicationShouldHandleReopen(bool /*hasVisibleWindows*/) {
  window.makeKeyAndOrderFront();
  return true;
}

bool App::applicationShouldTerminateAfterLastWindowClosed() {
  return true;
}

void App::applicationWillTerminate() {
  engine.stopAll();
}

void App::runClicked(const Button& sender) {
  engine.toggle(sender.tag());
  refresh();
}

void App::enableChanged(const Button&) {
  autoSave();
}

void App::stopAll() {
  engine.stopAll();
}

void App::fullScreen() {
  window.toggleFullScreen();
}

void App::connect() {
  connectKeyboardListener();
  refresh();
}

void App::settings() {
  openAccessibilitySettings();
}

}  // namespace vorrin
