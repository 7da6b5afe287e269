#include "platform/linux/foundation/storage_notice.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace vorrin {

void tell(std::string message) {
  std::replace_if(
      message.begin(), message.end(), [](char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; },
      '?');
  std::fprintf(stderr, "vorrin: %s\n", message.c_str());
}

void tellOnce(const std::string& message) {
  static std::set<std::string> told;
  if (told.insert(message).second) tell(message);
}

}  // namespace vorrin
