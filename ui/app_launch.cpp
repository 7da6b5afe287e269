#include "bridge/event_synthesis.h"
#include "bridge/keyboard_listener.h"
#include "bridge/permission_watch.h"
#include "bridge/program_engine.h"
#include "platform/application.h"
#include "platform/application_activity.h"
#include "platform/workspace.h"
#include "ui/app.h"
#include "ui/theme.h"

namespace vorrin {

void App::applicationDidFinishLaunching() {
  Application::loadIcon();
  buildMenu();
  loadSettings();
  buildWindow();
  applyTheme();
  installEngineCallbacks();
  observeSystem();
  if (interfaceTest_) {
    interfaceCheck_(*this);
  } else {
    start();
  }
}

void App::buildMenu() {
  const Action quit{"terminate", [](const Button&) { Application::terminate(); }};
  Application::setMainMenu(
      {{.title = "Vorrin", .items = {{"Quit Vorrin", quit, {.key = 'q', .control = false}}}},
       {.title = "View",
        .items = {{"Toggle Full Screen",
                   action("fullScreen", &App::fullScreen),
                   {.key = 'f', .control = true}}}}});
}

void App::installEngineCallbacks() {
  const std::function<void()> refreshIfAlive = [app = weak_from_this()] {
    if (const auto alive = app.lock()) alive->refresh();
  };
  engine.changed = refreshIfAlive;
  engine.permitted = [app = weak_from_this()] {
    const auto alive = app.lock();
    return macrosPermitted(alive && alive->settingsValid);
  };
  engine.emit = [refreshIfAlive](int macro) { emitMacro(macro, refreshIfAlive); };
}

void App::observeSystem() {
  const auto follow = [app = weak_from_this()] {
    if (const auto alive = app.lock()) alive->followSurroundings();
  };
  workspaceObserver_ = observeWorkspace({.willSleep = &App::stopAll,
                                         .sessionDidResignActive = &App::stopAll,
                                         .sessionActivityDidChange = follow});
}

/// Whether this program is in front and the user at the session decides what is claimed and shown.
void App::followSurroundings() {
  updateClaimedKeys();
  refresh();
}

void App::start() {
  const auto weak = weak_from_this();
  observeApplicationActivity([weak] {
    if (const auto alive = weak.lock()) alive->followSurroundings();
  });
  connect();
  poll = schedulePermissionPoll(
      [weak] {
        if (const auto alive = weak.lock()) alive->connect();
      },
      [weak] {
        if (const auto alive = weak.lock()) alive->refresh();
      });
  window.orderFront();
}

}  // namespace vorrin
