#include "settings/preset.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <locale>
#include <sstream>

#include "platform/text.h"
#include "settings/choices.h"

namespace vorrin {
namespace {

constexpr double shortestInterval = 0.001;
constexpr double longestInterval = 3600;

bool isValidInterval(double interval) {
  return interval >= shortestInterval && interval <= longestInterval;
}

/// By a stream, since `std::to_chars` for numbers with a fraction needs macOS 13.3.
std::string writtenNumber(double number, bool plain, int decimals) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << (plain ? std::fixed : std::scientific) << std::setprecision(decimals) << number;
  return text.str();
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
  return number && isValidInterval(*number) ? number : std::nullopt;
}

std::string decimalText(double number) {
  // Exponents only where plain decimals become hard to read.
  const double magnitude = std::abs(number);
  const bool plain = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
  // 17 digits tell every number apart; 4 more places stand before them in the smallest plain one.
  constexpr int mostDecimals = 21;
  std::string text;
  for (int decimals = 0; decimals <= mostDecimals; ++decimals) {
    text = writtenNumber(number, plain, decimals);
    if (parseNumber(text) == number) break;
  }
  if (plain && text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace vorrin
