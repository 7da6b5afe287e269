#include <algorithm>
#include <iterator>
#include <ranges>

#include "bridge/program_engine.h"
#include "platform/alert.h"
#include "platform/text.h"
#include "ui/app.h"
#include "ui/choice_items.h"

namespace vorrin {

namespace {

std::string quoted(const std::string& name) {
  return "“" + name + "”";
}

}  // namespace

std::optional<std::map<std::string, Preset>> App::readPresets() {
  auto [presets, failure] = presetStore().all();
  showStorageNotice();
  if (!failure) return std::move(presets);
  presetNotice.setText("Could not read presets: " + *failure + ".");
  return std::nullopt;
}

void App::reloadPresets(const std::optional<std::string>& selected) {
  presetList.removeAllItems();
  const auto presets = readPresets();
  std::vector<std::string> names;
  if (presets) std::ranges::copy(std::views::keys(*presets), std::back_inserter(names));
  localizedStandardSort(names);
  const bool any = !names.empty();
  if (!any) names.emplace_back(presets ? "No saved presets" : "Presets could not be read");
  presetList.addItems(names);
  presetList.setEnabled(any);
  if (selected) presetList.selectItem(*selected);
}

void App::savePreset() {
  const std::optional<std::string> name = vorrin::presetName(presetName.text());
  const std::optional<Preset> preset = currentPreset();
  if (!name || !preset) {
    presetNotice.setText("Enter a name (1–80 characters) and valid, distinct macro settings.");
    return;
  }
  const auto presets = readPresets();
  if (!presets) return;
  if (!presets->contains(*name)) {
    commitPreset(*preset, *name);
    return;
  }
  const Alert alert{.messageText = "Replace " + quoted(*name) + " ?",
                    .informativeText = "This replaces the existing saved preset.",
                    .buttons = {"Replace", "Cancel"}};
  beginSheet(alert, window, [this, preset = *preset, name = *name](int button) {
    if (button == 0) commitPreset(preset, name);
  });
}

void App::commitPreset(const Preset& preset, const std::string& name) {
  if (!presetStore().save(preset, name)) {
    presetNotice.setText("Could not save preset.");
    return;
  }
  presetName.setText(name);
  reloadPresets(name);
  presetNotice.setText("Saved " + quoted(name) + ".");
}

void App::loadPreset() {
  const std::string name = presetList.titleOfSelectedItem();
  const auto presets = readPresets();
  if (!presets) return;
  const auto found = presets->find(name);
  if (found == presets->end() || !found->second.valid()) {
    presetNotice.setText("Choose a saved preset first.");
    return;
  }
  engine.stopAll();
  showPreset(found->second);
  save();
  presetName.setText(name);
  presetNotice.setText("Loaded " + quoted(name) + ". Both macros are OFF.");
}

void App::showPreset(const Preset& preset) {
  for (int macro = 0; macro < 2; ++macro) {
    const auto index = static_cast<std::size_t>(macro);
    fields[index].setText(decimalText(preset.intervals[index]));
    shortcuts[index].selectItem(choiceIndex(preset.keys[index]));
    checks[index].setOn(preset.enabled[index]);
  }
  output.selectItem(static_cast<int>(preset.digit));
}

std::optional<std::string> App::selectedPreset() {
  std::string name = presetList.titleOfSelectedItem();
  const auto presets = readPresets();
  if (!presets) return std::nullopt;
  if (presets->contains(name)) return name;
  presetNotice.setText("Select a saved preset first.");
  return std::nullopt;
}

void App::renamePreset() {
  const std::optional<std::string> name = selectedPreset();
  if (!name) return;
  const TextField newName = TextField::field(*name);
  newName.setWidth(300);
  newName.setHeight(24);
  newName.setAccessibilityLabel("New preset name");
  theme(newName);
  const Alert alert{.messageText = "Rename preset",
                    .informativeText = "Enter a unique name (1–80 characters).",
                    .buttons = {"Rename", "Cancel"},
                    .accessory = newName};
  beginSheet(alert, window, [this, oldName = *name, newName](int button) {
    if (button == 0) finishRename(oldName, newName.text());
  });
}

void App::finishRename(const std::string& oldName, const std::string& typedName) {
  const std::string newName = trimmed(typedName);
  if (!presetStore().rename(oldName, newName)) {
    const auto presets = readPresets();
    if (!presets) return;
    const bool isFree =
        vorrin::presetName(newName) && (newName == oldName || !presets->contains(newName));
    presetNotice.setText(isFree ? "Could not rename preset."
                                : "Name is empty, too long, or already exists.");
    return;
  }
  reloadPresets(newName);
  presetName.setText(newName);
  presetNotice.setText("Renamed to " + quoted(newName) + ".");
}

void App::deletePreset() {
  const std::optional<std::string> name = selectedPreset();
  if (!name) return;
  // Here the safe button comes first: what it keeps cannot be had back.
  const Alert alert{
      .messageText = "Delete " + quoted(*name) + "?",
      .informativeText =
          "This removes the saved preset. Your current macro settings stay unchanged.",
      .buttons = {"Cancel", "Delete"},
      .destructiveButton = 1};
  beginSheet(alert, window, [this, name = *name](int button) {
    if (button == 1) finishDelete(name);
  });
}

void App::finishDelete(const std::string& name) {
  if (!presetStore().remove(name)) {
    presetNotice.setText("Could not delete preset.");
    return;
  }
  if (presetName.text() == name) presetName.setText("");
  reloadPresets(std::nullopt);
  presetNotice.setText("Deleted " + quoted(name) + ".");
}

}  // namespace vorrin
