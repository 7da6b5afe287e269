#include "platform/macos/foundation/ns_string.h"

#include "platform/macos/foundation/utf8.h"

namespace vorrin {

NSString* nsString(std::string_view text) {
  // NSString takes all or nothing.
  const std::string repaired = repairedUtf8(text);
  return [[NSString alloc] initWithBytes:repaired.data()
                                  length:repaired.size()
                                encoding:NSUTF8StringEncoding];
}

std::string standardString(NSString* text) {
  // Not UTF8String, which ends at a NUL character; and lossy, since an NSString may hold half a
  // surrogate pair.
  NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  if (bytes.length == 0) return {};
  return {static_cast<const char*>(bytes.bytes), bytes.length};
}

}  // namespace vorrin
