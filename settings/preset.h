#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorrin {

/// Everything the user can set for the two macros. Entry 0 of each list belongs to the
/// keyboard-repeat macro, entry 1 to the left-mouse-click macro. Any values can be held; `valid`
/// tells whether they can be used.
struct Preset {
  std::vector<double> intervals;    ///< seconds between two actions
  std::vector<std::uint16_t> keys;  ///< virtual key code of the shortcut
  std::int64_t digit = 0;           ///< the digit key that macro 0 presses
  std::vector<bool> enabled;        ///< whether the macro may be started

  /// Two acceptable intervals, two different keys out of `choices`, a digit from 0 to 9, two flags.
  [[nodiscard]] bool valid() const;

  bool operator==(const Preset&) const = default;
};

/// The number of seconds that `text` gives as a macro's interval, unrounded: 0.001 to 3600, both
/// included, written as C's `strtod` reads it in the C locale, with nothing before or after it.
/// Nothing for any other text.
std::optional<double> validInterval(std::string_view text);

/// The shortest decimal text that reads back as `number`; whole numbers end in ".0".
std::string decimalText(double number);

}  // namespace vorrin
