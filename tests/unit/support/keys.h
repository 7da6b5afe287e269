#pragma once

#include <cstdint>

namespace vorrin {

/// Key codes of the shortcuts that a fresh Vorrin has.
inline constexpr std::uint16_t backtick = 50;
inline constexpr std::uint16_t tab = 48;

}  // namespace vorrin
