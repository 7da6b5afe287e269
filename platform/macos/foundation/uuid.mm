#include "platform/uuid.h"

#include "platform/macos/foundation/ns_string.h"

namespace vorrin {

std::string newUuidString() {
  return standardString(NSUUID.UUID.UUIDString);
}

}  // namespace vorrin
