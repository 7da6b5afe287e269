#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace vorrin {

/// A key that may serve as a macro's shortcut.
struct ShortcutChoice {
  std::string_view name;  ///< as the shortcut menus show it
  std::uint16_t keyCode;  ///< macOS virtual key code
};

/// All keys that may serve as shortcuts, in the order of the menus.
extern const std::array<ShortcutChoice, 6> choices;

/// Whether `keyCode` is the code of one of `choices`. Takes any integer, so that stored numbers are
/// compared without being cut to 16 bits first.
bool isChoice(std::int64_t keyCode);

}  // namespace vorrin
