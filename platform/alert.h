#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/text_field.h"
#include "platform/window.h"

namespace vorrin {

/// A question asked in a sheet, inside a window.
struct Alert {
  std::string messageText;
  std::string informativeText;
  /// In the order shown; the first is the default. A button called "Cancel" also answers Escape.
  std::vector<std::string> buttons;
  /// Index of the button that takes something away for good; it is told apart from the others.
  std::optional<int> destructiveButton = std::nullopt;
  /// A field shown below the texts, which are as wide; it has the keyboard when the sheet appears.
  std::optional<TextField> accessory = std::nullopt;
};

/// Shows `alert` on `window`, which takes no input until it is answered, and returns at once.
/// The main menu works on. `completion` runs later on the main thread, once, with the index of the
/// button chosen. When the program ends first, or the window already shows a sheet, it never runs.
void beginSheet(const Alert& alert, const Window& window, std::function<void(int)> completion);

}  // namespace vorrin
