#include "platform/text_file.h"

#include "platform/macos/foundation/ns_string.h"
#include "platform/portable/utf8.h"

namespace vorrin {

std::filesystem::path homeDirectory() {
  return standardString(NSFileManager.defaultManager.homeDirectoryForCurrentUser.path);
}

std::optional<std::string> readTextFile(const std::filesystem::path& path) {
  NSData* bytes = [NSData dataWithContentsOfFile:nsString(path.native())];
  if (bytes == nil) return std::nullopt;
  const std::string_view text(static_cast<const char*>(bytes.bytes), bytes.length);
  return isUtf8(text) ? std::optional(std::string(text)) : std::nullopt;
}

bool writeTextFileAtomically(const std::filesystem::path& path, std::string_view text) {
  NSData* bytes = [NSData dataWithBytes:text.data() length:text.size()];
  return [bytes writeToFile:nsString(path.native()) options:NSDataWritingAtomic error:nil];
}

}  // namespace vorrin
