#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace vorrin {

/// `number` as an integer; nothing when it has a fraction, is not finite or does not fit.
inline std::optional<std::int64_t> wholeNumber(double number) {
  // Both bounds are exact as doubles; -2^63 fits, 2^63 does not. NaN fails the comparison.
  constexpr double limit = 9223372036854775808.0;
  if (!(number >= -limit && number < limit) || std::trunc(number) != number) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

}  // namespace vorrin
