#include "settings/preset.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "platform/text.h"
#include "settings/choices.h"

namespace vorrin {
namespace {

constexpr double shortestInterval = 0.001;
constexpr double longestInterval = 3600;

bool isValidInterval(double interval) {
  return validInterval(decimalText(interval)).has_value();
}

}  // namespace

bool Preset::valid() const {
  return intervals.size() == 2 &&
         std::all_of(intervals.begin(), intervals.end(), isValidInterval) && keys.size() == 2 &&
         keys[0] != keys[1] && std::all_of(keys.begin(), keys.end(), isChoice) && digit >= 0 &&
         digit <= 9 && enabled.size() == 2;
}

std::optional<double> validInterval(std::string_view text) {
  const auto number = parseNumber(text);
  if (!number || !std::isfinite(*number)) return std::nullopt;
  if (*number < shortestInterval || *number > longestInterval) return std::nullopt;
  return number;
}

std::string decimalText(double number) {
  // Without a format to_chars turns to exponents as soon as they are shorter (100000 -> "1e+05");
  // a user expects them only where plain decimals become hard to read.
  const double magnitude = std::abs(number);
  const bool plain = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
  std::array<char, 32> buffer{};
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                    plain ? std::chars_format::fixed : std::chars_format::scientific);
  std::string text(buffer.data(), result.ptr);
  if (plain && text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace vorrin
