#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vorrin {

/// Titles of the shortcut pop-ups' items, in the order of `choices`.
std::vector<std::string> choiceTitles();

/// Index in `choices` of the first entry with this key code. A code outside the table is a
/// programming error and ends the process: settings are repaired or refused before they get here.
int choiceIndex(std::uint16_t keyCode);

}  // namespace vorrin
