// The texts of the interval fields, against the C library's own reading of them.

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "platform/fatal_error.h"
#include "settings/preset.h"

namespace {

std::optional<double> intervalByStrtod(const std::string& text) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text.front())) != 0) return {};
  char* end = nullptr;
  errno = 0;
  const double number = std::strtod(text.c_str(), &end);
  if (errno == ERANGE || end != text.data() + text.size()) return {};
  if (!std::isfinite(number) || number < 0.001 || number > 3600) return {};
  return number;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  const auto interval = vorrin::validInterval(text);
  vorrin::assertThat(interval == intervalByStrtod(text), "the C library reads the same interval");
  if (interval) {
    const auto again = vorrin::validInterval(vorrin::decimalText(*interval));
    vorrin::assertThat(again == interval, "an interval's own text reads back as it");
  }
  return 0;
}
