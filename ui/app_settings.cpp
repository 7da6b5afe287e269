#include "bridge/keyboard_listener.h"
#include "bridge/program_engine.h"
#include "settings/choices.h"
#include "settings/settings_persistence.h"
#include "ui/app.h"
#include "ui/theme.h"

namespace vorrin {

namespace {

std::string notSaved(const std::string& reason) {
  return "Not saved: " + reason + ". Settings apply until Vorrin quits.";
}

}  // namespace

void App::loadSettings() {
  const auto [settings, failure] = loadCurrentSettings(defaults());
  if (failure) unreadSettings_ = "the stored settings could not be read (" + *failure + ")";
  loadSettingsIntoEngine(settings);
}

std::string App::startNotice() const {
  return unreadSettings_ ? notSaved(*unreadSettings_) : "Settings save automatically.";
}

std::optional<Preset> App::currentPreset() const {
  Preset preset;
  for (const TextField& field : fields) {
    const std::optional<double> interval = validInterval(field.text());
    if (!interval) return std::nullopt;
    preset.intervals.push_back(*interval);
  }
  for (const PopUpButton& shortcut : shortcuts) {
    preset.keys.push_back(
        choices.at(static_cast<std::size_t>(shortcut.indexOfSelectedItem())).keyCode);
  }
  preset.digit = output.indexOfSelectedItem();
  for (const Button& check : checks) preset.enabled.push_back(check.isOn());
  if (!preset.valid()) return std::nullopt;
  return preset;
}

void App::autoSave() {
  engine.stopAll();
  if (const std::optional<Preset> preset = currentPreset()) {
    acceptSettings(*preset);
  } else {
    refuseSettings();
  }
  refresh();
}

void App::acceptSettings(const Preset& preset) {
  settingsValid = true;
  for (const TextField& field : fields) field.setTextColor(hackerGreen);
  loadSettingsIntoEngine(preset);
  const StorageFailure failure =
      unreadSettings_ ? unreadSettings_ : storeCurrentSettings(defaults(), preset);
  saveNotice.setText(failure ? notSaved(*failure)
                             : "Saved automatically · macros stopped · presets unchanged");
  showStorageNotice();
}

void App::showStorageNotice() {
  if (const auto notice = defaults().takeNotice()) saveNotice.setText(*notice);
}

void App::refuseSettings() {
  settingsValid = false;
  const bool sameShortcut =
      shortcuts[0].indexOfSelectedItem() == shortcuts[1].indexOfSelectedItem();
  saveNotice.setText(sameShortcut ? "Not saved: choose a different shortcut for each macro."
                                  : "Not saved: intervals must be 0.001–3600 seconds.");
  for (const TextField& field : fields) {
    field.setTextColor(validInterval(field.text()) ? hackerGreen : Color::systemOrange());
  }
}

void App::controlTextDidChange(const TextField&) {
  autoSave();
}

void App::save() {
  autoSave();
}

void App::loadSettingsIntoEngine(const Preset& settings) {
  for (int macro = 0; macro < 2; ++macro) {
    const auto index = static_cast<std::size_t>(macro);
    engine.intervals[macro] = settings.intervals[index];
    engine.keys[macro] = settings.keys[index];
    engine.enabled[macro] = settings.enabled[index];
  }
  engine.digit = static_cast<int>(settings.digit);
  updateClaimedKeys();
}

}  // namespace vorrin
