#include "platform/text.h"

#include <algorithm>

#include "platform/macos/foundation/ns_string.h"

namespace vorrin {

void localizedStandardSort(std::vector<std::string>& names) {
  std::stable_sort(names.begin(), names.end(), [](const auto& left, const auto& right) {
    return [nsString(left) localizedStandardCompare:nsString(right)] == NSOrderedAscending;
  });
}

}  // namespace vorrin
