#include "platform/text.h"

#include "platform/macos/foundation/ns_string.h"

namespace vorrin {

std::weak_ordering localizedStandardCompare(std::string_view left, std::string_view right) {
  return [nsString(left) localizedStandardCompare:nsString(right)] <=> NSOrderedSame;
}

}  // namespace vorrin
