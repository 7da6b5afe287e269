#include "platform/macos/foundation/empty_domains.h"

#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace vorrin {

namespace {

using std::filesystem::path;

/// In the binary form an empty dictionary is one byte after the signature; as a text it is an empty
/// element, which no other value that a domain can be has.
bool isEmptyList(const path& file) {
  constexpr std::streamsize largest = 1024;
  std::string content(largest, '\0');
  std::ifstream stream(file, std::ios::binary);
  content.resize(static_cast<std::size_t>(stream.read(content.data(), largest).gcount()));
  if (content.starts_with("bplist00\xD0")) return true;
  const auto dictionary = content.find("<dict/>");
  return dictionary != content.npos && content.find("<key>") == content.npos;
}

}  // namespace

void removeEmptyDomains(const path& preferences, std::string_view prefix) {
  std::error_code error;
  std::vector<path> empty;
  for (const auto& entry : std::filesystem::directory_iterator(preferences, error)) {
    const path& file = entry.path();
    const bool isDomain =
        file.filename().string().starts_with(prefix) && file.extension() == ".plist";
    if (isDomain && isEmptyList(file)) empty.push_back(file);
  }
  for (const path& file : empty) std::filesystem::remove(file, error);
}

}  // namespace vorrin
