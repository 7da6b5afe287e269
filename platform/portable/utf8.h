#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vorrin {

/// A character at the beginning of a text.
struct Character {
  char32_t code = U'\uFFFD';  ///< the replacement character for a byte that belongs to no character
  std::size_t length = 1;     ///< in bytes
  bool isValid = false;
};

/// The first character of `text`, which is not empty.
Character firstCharacter(std::string_view text);

/// Whether all of `text` is UTF-8.
bool isUtf8(std::string_view text);

/// `text` as UTF-16, with U+FFFD for every byte that belongs to no character. U+FEFF is a character
/// like any other, also at the beginning, where the systems' own conversions take it for a mark of
/// the byte order and drop it.
std::u16string utf16(std::string_view text);

}  // namespace vorrin
