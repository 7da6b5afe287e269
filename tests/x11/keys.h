#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "tests/x11/harness/user.h"

namespace vorrin::x11_tests {

/// macOS virtual key codes.
namespace keys {
inline constexpr std::uint16_t backtick = 50;
inline constexpr std::uint16_t tab = 48;
inline constexpr std::uint16_t f6 = 97;
inline constexpr std::uint16_t f7 = 98;
inline constexpr std::uint16_t f8 = 100;
inline constexpr std::uint16_t f9 = 101;
inline constexpr std::uint16_t escape = 53;
inline constexpr std::uint16_t space = 49;
inline constexpr std::uint16_t down = 125;
inline constexpr std::uint16_t a = 0;
inline constexpr std::uint16_t b = 11;

/// The six that may be shortcuts.
inline constexpr std::array shortcuts{backtick, tab, f6, f7, f8, f9};

/// 0 to 9.
inline constexpr auto& digits = digitKeys;
}  // namespace keys

/// A press and a release of the key as `keysOf` shows them.
inline std::string tapOf(std::uint16_t virtualKey) {
  const std::string code = std::to_string(keycodeOf(virtualKey));
  return "+" + code + " -" + code;
}

}  // namespace vorrin::x11_tests
