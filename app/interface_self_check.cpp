#include "app/interface_self_check.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <source_location>

#include "bridge/program_engine.h"
#include "platform/fatal_error.h"
#include "ui/theme.h"

namespace vorrin {

namespace {

constexpr Size compactSize{580, 700};
constexpr Size expandedSize{1440, 900};
constexpr int fewestControls = 21;

std::optional<double> storedInterval(const UserDefaults& defaults) {
  const std::optional<DefaultsObject> object = defaults.object("interval0").value;
  const double* number = object ? std::get_if<double>(&*object) : nullptr;
  return number ? std::optional(*number) : std::nullopt;
}

void type(App& app, const std::string& text) {
  app.fields[0].setText(text);
  app.controlTextDidChange(app.fields[0]);
}

void checkDrafts(App& app) {
  type(app, "0.125");
  precondition(storedInterval(app.defaults()) == 0.125, "an accepted edit is stored");
  type(app, "");
  precondition(storedInterval(app.defaults()) == 0.125, "an invalid draft stores nothing");
  precondition(!app.settingsValid, "an invalid draft makes the settings invalid");
  precondition(!app.buttons[0].isEnabled(), "an invalid draft disables Start");
  app.fields[0].setText("0.05");
}

void checkCollision(App& app) {
  app.shortcuts[0].selectItem(app.shortcuts[1].indexOfSelectedItem());
  app.autoSave();
  precondition(!app.settingsValid, "equal shortcuts are refused");
  const int taken = app.shortcuts[0].indexOfSelectedItem();
  app.shortcuts[1].selectItem(taken == 0 ? 1 : 0);
  app.autoSave();
  precondition(app.settingsValid, "distinct shortcuts are accepted again");
}

void checkWiring(const App& app) {
  for (const TextField& field : app.fields) {
    precondition(field.delegate() == &app,
                 "the application is the delegate of each interval field");
  }
  precondition(app.output.action() == "autoSave", "the keyboard output saves itself");
  for (const PopUpButton& shortcut : app.shortcuts) {
    precondition(shortcut.action() == "autoSave", "each shortcut saves itself");
  }
}

void checkPersistence(const App& app) {
  const std::optional<UserDefaults> fresh = UserDefaults::suite(app.testSuite);
  if (!fresh) {
    endWithDiagnostic("Precondition failed", "the private domain can be opened again",
                      std::source_location::current());
  }
  precondition(storedInterval(*fresh) == 0.05, "a second object reads what the handlers stored");
  UserDefaults::removePersistentDomain(app.testSuite);
}

Preset settingsShown(const App& app) {
  const std::optional<Preset> settings = app.currentPreset();
  if (!settings) {
    endWithDiagnostic("Precondition failed", "the window starts with valid settings",
                      std::source_location::current());
  }
  return *settings;
}

void checkSettings(App& app) {
  const Preset initial = settingsShown(app);
  precondition(app.presetStore().save(initial, "Protected"), "a preset is saved");
  checkDrafts(app);
  checkCollision(app);
  const auto presets = app.presetStore().all().value;
  precondition(presets.contains("Protected") && presets.at("Protected") == initial,
               "edits leave stored presets alone");
  checkWiring(app);
  checkPersistence(app);
  std::puts(
      "PASS: real auto-save handlers, invalid drafts preserve saved state, collision recovery, "
      "stop-on-edit, preset isolation and persistence.");
}

std::string text(const Rect& rect) {
  const auto number = [](double value) { return decimalText(value); };
  return "(" + number(rect.x) + ", " + number(rect.y) + ", " + number(rect.width) + ", " +
         number(rect.height) + ")";
}

/// Ends the process when a control lies more than a point outside `root`; bezels may overhang by
/// one.
void inspect(const View& view, const View& root, int& count) {
  if (view.isControl()) {
    const Rect rect = view.boundsIn(root);
    const Rect room = root.bounds();
    const bool inside = rect.x >= -1 && rect.maxX() <= room.width + 1 && rect.y >= -1 &&
                        rect.maxY() <= room.height + 1;
    precondition(inside, "Clipped control: " + view.description() + " " + text(rect));
    ++count;
  }
  for (const View& subview : view.subviews()) inspect(subview, root, count);
}

int checkWindow(App& app) {
  const View content = app.window.contentView();
  app.refresh();
  content.layoutSubtreeIfNeeded();
  int count = 0;
  inspect(content, content, count);
  precondition((app.window.styleMask() & window_style::resizable) != 0, "the window is resizable");
  precondition(
      (app.window.collectionBehavior() & window_collection_behavior::fullScreenPrimary) != 0,
      "the window can fill the screen");
  precondition(app.window.backgroundColor() == Color::black(), "the window is black");
  for (const TextField& field : app.fields) {
    precondition(field.textColor() == hackerGreen, "interval texts are green");
  }
  app.window.setContentSize(expandedSize);
  content.layoutSubtreeIfNeeded();
  int expandedCount = 0;
  inspect(content, content, expandedCount);
  app.window.setContentSize(compactSize);
  content.layoutSubtreeIfNeeded();
  std::puts("PASS: fullscreen capability, black/green theme, compact and expanded layout.");
  return count;
}

void writeSnapshot(const App& app) {
  const std::string png = app.window.contentView().pngSnapshot();
  precondition(!png.empty(), "the window can be drawn");
  std::ofstream file("ui-preview.png", std::ios::binary | std::ios::trunc);
  file << png;
  file.close();
  precondition(!file.fail(), "ui-preview.png can be written into the working directory");
}

}  // namespace

void runInterfaceSelfCheck(App& app) {
  checkSettings(app);
  const int count = checkWindow(app);
  precondition(count >= fewestControls, "the window holds all its controls");
  precondition(!engine.running[0] && !engine.running[1], "no macro runs");
  writeSnapshot(app);
  std::printf("PASS: native UI contains %d controls within window bounds; both macros OFF.\n",
              count);
  std::fflush(stdout);
  std::exit(EXIT_SUCCESS);
}

}  // namespace vorrin
