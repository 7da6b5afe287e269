#include "platform/macos/foundation/ns_string.h"

#include "platform/portable/utf8.h"

namespace vorrin {

NSString* nsString(std::string_view text) {
  // By UTF-16: of UTF-8, NSString takes all or nothing, and drops a leading U+FEFF.
  const std::u16string units = utf16(text);
  return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                 length:units.size()];
}

std::string standardString(NSString* text) {
  // Not UTF8String, which ends at a NUL character; and lossy, since an NSString may hold half a
  // surrogate pair.
  NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  if (bytes.length == 0) return {};
  return {static_cast<const char*>(bytes.bytes), bytes.length};
}

}  // namespace vorrin
