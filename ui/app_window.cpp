#include <array>

#include "bridge/program_engine.h"
#include "ui/app.h"
#include "ui/choice_items.h"
#include "ui/macro_names.h"
#include "ui/theme.h"

namespace vorrin {

namespace {

constexpr Size contentSize{580, 700};
constexpr double columnWidth = 532;
constexpr double cardRowWidth = 500;
constexpr double headingSize = 21;
// Whatever they say or show, their neighbours stay where they are.
constexpr double startButtonWidth = 64;
constexpr double presetWidth = 220;

std::vector<std::string> digitTitles() {
  std::vector<std::string> titles;
  for (int digit = 0; digit <= 9; ++digit) titles.push_back(std::to_string(digit));
  return titles;
}

}  // namespace

void App::buildWindow() {
  window = Window::make(contentSize, window_style::titled | window_style::closable |
                                         window_style::miniaturizable | window_style::resizable);
  window.setTitle("Vorrin");
  window.center();
  window.setCollectionBehavior(window.collectionBehavior() |
                               window_collection_behavior::fullScreenPrimary);
  window.setContentMinSize(contentSize);
  window.setBackgroundColor(Color::black());
  window.setDarkAppearance();
  window.contentView().setBackgroundColor(Color::black());
  window.contentView().addTopCentered(buildContent(), 24, columnWidth);
}

StackView App::buildContent() {
  StackView root = StackView::make(Orientation::vertical, 18, {});
  root.addArrangedSubview(headerRow());
  root.addArrangedSubview(label("Toggle once to repeat. Escape always stops both macros."));
  for (int macro = 0; macro < 2; ++macro) root.addArrangedSubview(macroCard(macro));
  root.addArrangedSubview(outputRow());
  root.addArrangedSubview(
      label("Paused while editing here. Mouse clicks follow your pointer.\n"
            "0.001s is best effort; actual speed varies."));
  saveNotice = label(startNotice());
  saveNotice.setMaximumNumberOfLines(2);
  root.addArrangedSubview(saveNotice);
  root.addArrangedSubview(presetsCard());
  presetNotice = label("");
  presetNotice.setFont({12, FontWeight::regular, FontFamily::system});
  // A name may be as wide as two lines; a third would push the last row out of the window.
  presetNotice.setMaximumNumberOfLines(2);
  root.addArrangedSubview(presetNotice);
  reloadPresets(std::nullopt);
  status = label("");
  status.setMaximumNumberOfLines(2);
  root.addArrangedSubview(status);
  root.addArrangedSubview(permissionRow());
  return root;
}

StackView App::headerRow() {
  header_ = label("> VORRIN");
  header_.setFont({headingSize, FontWeight::semibold});
  const Button expand = button("Full screen", "fullScreen", &App::fullScreen);
  StackView made = row(std::array<View, 3>{header_, View::spacer(), expand});
  made.setWidth(columnWidth);
  return made;
}

StackView App::macroCard(int macro) {
  const StackView titleRow = macroTitleRow(macro);
  return card(std::array<View, 2>{titleRow, macroSettingsRow(macro)});
}

StackView App::macroTitleRow(int macro) {
  const TextField state = label("OFF", true);
  states.push_back(state);
  // The bold label beside the box carries the name; a screen reader still hears it from the box.
  const Button check = Button::checkbox(
      "", {"enableChanged", [this](const Button& sender) { enableChanged(sender); }});
  check.setAccessibilityLabel("Enable " + spokenMacroName(macro));
  check.setTag(macro);
  check.setOn(engine.enabled[macro]);
  checks.push_back(check);
  const Button startButton =
      Button::push("Start", {"runClicked", [this](const Button& sender) { runClicked(sender); }});
  startButton.setWidth(startButtonWidth);
  startButton.setTag(macro);
  buttons.push_back(startButton);
  const TextField title = label(macroName(macro), true);
  StackView made = row(std::array<View, 5>{check, title, View::spacer(), state, startButton});
  made.setWidth(cardRowWidth);
  return made;
}

StackView App::macroSettingsRow(int macro) {
  const PopUpButton shortcut = popUp(choiceTitles(), choiceIndex(engine.keys[macro]),
                                     "Shortcut of " + spokenMacroName(macro));
  shortcut.setToolTip("A key's place, on every layout: Backtick ` is the key left of 1");
  shortcuts.push_back(shortcut);
  const TextField field = TextField::field(decimalText(engine.intervals[macro]));
  field.setWidth(75);
  field.setAccessibilityLabel("Seconds between two actions of " + spokenMacroName(macro));
  field.setToolTip("0.05, with a full stop");
  field.setDelegate({this, [this](const TextField& edited) { controlTextDidChange(edited); }});
  fields.push_back(field);
  return row(
      std::array<View, 5>{label("Shortcut"), shortcut, label("Every"), field, label("seconds")});
}

StackView App::outputRow() {
  output = popUp(digitTitles(), engine.digit, "Keyboard output");
  output.setToolTip("A key's place, on every layout: on AZERTY 1 types &");
  stopAllButton_ =
      Button::push("Stop all · Esc", {"stopAll", [](const Button&) { App::stopAll(); }});
  StackView made =
      row(std::array<View, 4>{label("Keyboard output"), output, View::spacer(), stopAllButton_});
  made.setWidth(columnWidth);
  return made;
}

StackView App::presetsCard() {
  presetsHeading_ = label("NAMED PRESETS");
  presetsHeading_.setFont({11, FontWeight::semibold});
  presetName = TextField::field("");
  presetName.setPlaceholder("Preset name");
  presetName.setWidth(presetWidth);
  presetName.setAccessibilityLabel("Preset name");
  const StackView nameRow =
      row(std::array<View, 2>{presetName, button("Save preset", "savePreset", &App::savePreset)});
  presetList = PopUpButton::make({});
  presetList.setWidth(presetWidth);
  presetList.setAccessibilityLabel("Saved presets");
  const Button load = button("Load", "loadPreset", &App::loadPreset);
  const Button rename = button("Rename", "renamePreset", &App::renamePreset);
  const Button erase = button("Delete", "deletePreset", &App::deletePreset);
  const StackView listRow = row(std::array<View, 4>{presetList, load, rename, erase});
  return card(std::array<View, 3>{presetsHeading_, nameRow, listRow});
}

StackView App::permissionRow() {
  const Button open = Button::push("Open Accessibility Settings",
                                   {"settings", [](const Button&) { App::settings(); }});
  const Button retry = button("Retry connection", "connect", &App::connect);
  return row(std::array<View, 2>{open, retry});
}

void App::applyTheme() {
  theme(window.contentView());
  header_.setTextColor(hackerGreen);
  presetsHeading_.setTextColor(Color::sRgb(0.77, 0.82, 0.79));
  stopAllButton_.setContentTintColor(hackerGreen);
}

}  // namespace vorrin
