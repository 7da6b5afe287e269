#include "platform/linux/session/bus_address.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>

namespace vorrin {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

/// Undoes the escapes "%xx" of an address's values.
std::string unescaped(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    unsigned char byte = 0;
    const bool isEscape =
        text.size() > 2 && text[0] == '%' &&
        std::from_chars(text.data() + 1, text.data() + 3, byte, 16).ptr == text.data() + 3;
    result += isEscape ? static_cast<char>(byte) : text[0];
    text.remove_prefix(isEscape ? 3 : 1);
  }
  return result;
}

std::optional<LocalSocketAddress> localSocket(const std::string& name, bool isAbstract) {
  LocalSocketAddress result;
  // An abstract name follows a zero byte and ends with the length, a path ends with a zero byte.
  if (name.empty() || name.size() + 1 > sizeof(result.address.sun_path)) return std::nullopt;
  result.address.sun_family = AF_UNIX;
  std::copy(name.begin(), name.end(), result.address.sun_path + (isAbstract ? 1 : 0));
  result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  return result;
}

std::optional<LocalSocketAddress> localSocket(std::string_view keysAndValues) {
  for (const std::string_view pair : split(keysAndValues, ',')) {
    const std::size_t equals = std::min(pair.find('='), pair.size() - 1);
    const std::string_view key = pair.substr(0, equals);
    const std::string value = unescaped(pair.substr(equals + 1));
    if (key == "path") return localSocket(value, false);
    if (key == "abstract") return localSocket(value, true);
    const char* const directory = std::getenv("XDG_RUNTIME_DIR");
    if (key == "runtime" && directory != nullptr) {
      return localSocket(directory + std::string("/bus"), false);
    }
  }
  return std::nullopt;
}

}  // namespace

std::vector<BusAddress> readBusAddresses(std::string_view list) {
  std::vector<BusAddress> addresses;
  for (const std::string_view entry : split(list, ';')) {
    const std::size_t colon = entry.find(':');
    if (colon == std::string_view::npos) continue;
    BusAddress address{.transport = std::string(entry.substr(0, colon)), .local = {}};
    if (address.transport == "unix") address.local = localSocket(entry.substr(colon + 1));
    addresses.push_back(std::move(address));
  }
  return addresses;
}

}  // namespace vorrin
