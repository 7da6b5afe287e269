#pragma once

#include <string>

namespace vorrin {

/// Name of a macro as its card shows it.
inline std::string macroName(int macro) {
  return macro == 0 ? "Keyboard repeat" : "Left mouse click";
}

/// The same within a sentence, as a screen reader says it.
inline std::string spokenMacroName(int macro) {
  return macro == 0 ? "keyboard repeat" : "left mouse click";
}

}  // namespace vorrin
