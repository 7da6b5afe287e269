#pragma once

#include <string>
#include <string_view>

namespace vorrin {

/// `text` with U+FFFD in place of every byte sequence that is not UTF-8, one for each longest part
/// that begins a character, as the Unicode standard recommends. Valid text comes back unchanged.
std::string repairedUtf8(std::string_view text);

}  // namespace vorrin
