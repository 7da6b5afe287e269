#include "platform/text_file.h"

#include "platform/macos/foundation/ns_string.h"

namespace vorrin {

std::filesystem::path homeDirectory() {
  return standardString(NSFileManager.defaultManager.homeDirectoryForCurrentUser.path);
}

std::optional<std::string> readTextFile(const std::filesystem::path& path) {
  // Read as bytes: a string read from a file may lose its byte-order mark, and with it a
  // difference.
  NSData* bytes = [NSData dataWithContentsOfFile:nsString(path.native())];
  NSString* text =
      bytes == nil ? nil : [[NSString alloc] initWithData:bytes encoding:NSUTF8StringEncoding];
  if (text == nil) return std::nullopt;
  return std::string(static_cast<const char*>(bytes.bytes), bytes.length);
}

bool writeTextFileAtomically(const std::filesystem::path& path, std::string_view text) {
  NSData* bytes = [NSData dataWithBytes:text.data() length:text.size()];
  return [bytes writeToFile:nsString(path.native()) options:NSDataWritingAtomic error:nil];
}

}  // namespace vorrin
