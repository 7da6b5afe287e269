#include "ui/choice_items.h"

#include <algorithm>

#include "platform/fatal_error.h"
#include "settings/choices.h"

namespace vorrin {

std::vector<std::string> choiceTitles() {
  std::vector<std::string> titles;
  titles.reserve(choices.size());
  for (const ShortcutChoice& choice : choices) titles.emplace_back(choice.name);
  return titles;
}

int choiceIndex(std::uint16_t keyCode) {
  const auto found = std::find_if(choices.begin(), choices.end(), [keyCode](const auto& choice) {
    return choice.keyCode == keyCode;
  });
  if (found == choices.end()) fatalError("a shortcut key is none of the choices");
  return static_cast<int>(found - choices.begin());
}

}  // namespace vorrin
