#include "platform/uuid.h"

#include <sys/random.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include "platform/fatal_error.h"

namespace vorrin {

namespace {

using UuidBytes = std::array<std::uint8_t, 16>;

UuidBytes randomBytes() {
  UuidBytes bytes{};
  // So few bytes come whole or not at all.
  while (::getrandom(bytes.data(), bytes.size(), 0) < 0) {
    if (errno != EINTR) fatalError("The system gave no random numbers");
  }
  return bytes;
}

}  // namespace

std::string newUuidString() {
  auto bytes = randomBytes();
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4: random
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // variant of RFC 4122
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    constexpr std::string_view digits = "0123456789ABCDEF";
    text += digits[bytes[i] >> 4];
    text += digits[bytes[i] & 0x0F];
  }
  return text;
}

}  // namespace vorrin
