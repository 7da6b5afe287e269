#include "settings/choices.h"

#include <algorithm>

namespace vorrin {

bool isChoice(std::int64_t keyCode) {
  return std::any_of(choices.begin(), choices.end(),
                     [keyCode](const ShortcutChoice& choice) { return choice.keyCode == keyCode; });
}

}  // namespace vorrin
