#include "bridge/program_engine.h"
#include "bridge/status_file.h"
#include "platform/accessibility.h"
#include "platform/application_activity.h"
#include "ui/app.h"
#include "ui/macro_names.h"
#include "ui/theme.h"

namespace vorrin {

namespace {

const char* stateText(int macro) {
  if (!engine.running[macro]) return "OFF";
  return applicationIsActive() ? "PAUSED · app focused" : "RUNNING";
}

const char* statusText(bool ready) {
  if (ready) return "Connected · settings persist · starts OFF on every launch";
  if (!isProcessTrusted()) {
    return "Permission needed: enable Vorrin in Accessibility. Connection retries automatically.";
  }
  return "Accessibility granted, but keyboard listener unavailable. Quit and reopen the app.";
}

}  // namespace

void App::refresh() {
  const bool ready = engine.tap.has_value() && isProcessTrusted();
  for (int macro = 0; macro < 2; ++macro) refreshMacro(macro, ready);
  refreshStatus(ready);
}

void App::refreshMacro(int macro, bool ready) {
  const auto index = static_cast<std::size_t>(macro);
  const bool running = engine.running[macro];
  states[index].setText(stateText(macro));
  states[index].setTextColor(running ? hackerGreen : dimGreen);
  const std::string title = running ? "Stop" : "Start";
  buttons[index].setTitle(title);
  buttons[index].setAccessibilityLabel(title + " " + spokenMacroName(macro));
  buttons[index].setEnabled(ready && engine.enabled[macro] && settingsValid);
}

void App::refreshStatus(bool ready) {
  status.setText(statusText(ready));
  updateStatusFile(ready);
  status.setTextColor(ready ? dimGreen : hackerGreen);
}

}  // namespace vorrin
