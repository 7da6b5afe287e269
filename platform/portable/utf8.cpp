#include "platform/portable/utf8.h"

#include <utf8proc.h>

namespace vorrin {

Character firstCharacter(std::string_view text) {
  utf8proc_int32_t code = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &code);
  if (length <= 0) return {};
  return {static_cast<char32_t>(code), static_cast<std::size_t>(length), true};
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    if (!character.isValid) return false;
    text.remove_prefix(character.length);
  }
  return true;
}

std::u16string utf16(std::string_view text) {
  constexpr char32_t firstOfPairs = 0x10000;
  std::u16string units;
  units.reserve(text.size());
  while (!text.empty()) {
    const auto [code, length, isValid] = firstCharacter(text);
    if (code < firstOfPairs) {
      units += static_cast<char16_t>(code);
    } else {
      units += static_cast<char16_t>(0xD800 + ((code - firstOfPairs) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((code - firstOfPairs) & 0x3FF));
    }
    text.remove_prefix(length);
  }
  return units;
}

}  // namespace vorrin
