#pragma once

#include <string_view>

#include "tests/x11/harness/user.h"

namespace vorrin::x11_tests {

/// The controls of Vorrin's window in the order in which the Tab key visits them.
enum class Control {
  fullScreen = 1,
  enableKeyboard,
  startKeyboard,
  keyboardShortcut,
  keyboardInterval,
  enableMouse,
  startMouse,
  mouseShortcut,
  mouseInterval,
  output,
  stopAll,
  presetName,
  savePreset,
  presetList,
  load,
  rename,
  erase,
  openSettings
};

/// Works Vorrin's window by the keyboard, from the moment it is in front for the first time.
class Panel {
 public:
  explicit Panel(User& user) : user_(user) {}

  /// With no preset saved the list of presets is disabled, and the Tab key leaves it out.
  void setHasPresets(bool hasPresets) { hasPresets_ = hasPresets; }

  void focus(Control control);

  /// Presses the focused button or switches the focused box.
  void push(Control control);

  /// Replaces the text of a field.
  void enter(Control field, std::string_view text);

  /// Moves the selection of a menu down or up by so many items.
  void choose(Control menu, int steps);

 private:
  [[nodiscard]] bool isVisited(Control control) const;

  User& user_;
  int current_ = 0;
  bool hasPresets_ = false;
};

}  // namespace vorrin::x11_tests
