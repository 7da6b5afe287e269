#include "platform/text.h"

#include <stdlib.h>
#include <utf8proc.h>

#if __has_include(<xlocale.h>)
#include <xlocale.h>
#else
#include <locale.h>
#endif

#include <cerrno>
#include <vector>

#include "platform/portable/utf8.h"

namespace vorrin {

namespace {

/// The set that macOS calls white space and newlines: the separators of Unicode, the line ends
/// among the controls, the tabulators, and the zero-width space, which was a separator until
/// Unicode 4.0.1.
bool isWhiteSpace(char32_t code) {
  constexpr char32_t nextLine = 0x85;
  constexpr char32_t zeroWidthSpace = 0x200B;
  if ((code >= U'\t' && code <= U'\r') || code == nextLine || code == zeroWidthSpace) return true;
  switch (utf8proc_category(static_cast<utf8proc_int32_t>(code))) {
    case UTF8PROC_CATEGORY_ZS:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return true;
    default:
      return false;
  }
}

/// Where each character begins, as a user counts them.
std::vector<std::size_t> characterStarts(std::string_view text) {
  std::vector<std::size_t> starts;
  utf8proc_int32_t state = 0;
  utf8proc_int32_t previous = 0;
  for (std::size_t place = 0; place < text.size();) {
    const Character character = firstCharacter(text.substr(place));
    const auto code = static_cast<utf8proc_int32_t>(character.code);
    if (starts.empty() || utf8proc_grapheme_break_stateful(previous, code, &state)) {
      starts.push_back(place);
    }
    previous = code;
    place += character.length;
  }
  return starts;
}

}  // namespace

std::string trimmed(std::string_view text) {
  std::size_t begin = text.size();
  std::size_t end = text.size();
  for (std::size_t place = 0; place < text.size();) {
    const Character character = firstCharacter(text.substr(place));
    if (!isWhiteSpace(character.code)) {
      if (begin > place) begin = place;
      end = place + character.length;
    }
    place += character.length;
  }
  return std::string(text.substr(begin, end - begin));
}

std::size_t characterCount(std::string_view text) {
  return characterStarts(text).size();
}

std::string shortenedInMiddle(const std::string& text,
                              const std::function<bool(const std::string&)>& fits) {
  if (fits(text)) return text;
  auto starts = characterStarts(text);
  starts.push_back(text.size());
  const auto withOnly = [&](std::size_t characters) {
    const std::size_t end = starts[starts.size() - 1 - characters / 2];
    return text.substr(0, starts[(characters + 1) / 2]) + "…" + text.substr(end);
  };
  std::size_t most = 0;
  for (std::size_t tooMany = starts.size() - 1; tooMany - most > 1;) {
    const std::size_t middle = most + (tooMany - most) / 2;
    (fits(withOnly(middle)) ? most : tooMany) = middle;
  }
  return withOnly(most);
}

std::optional<double> parseNumber(std::string_view text) {
  constexpr std::string_view spaces = "\t\n\v\f\r ";
  if (text.empty() || spaces.find(text.front()) != spaces.npos) return {};
  static const locale_t cLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
  const std::string terminated(text);
  char* end = nullptr;
  errno = 0;
  const double number = ::strtod_l(terminated.c_str(), &end, cLocale);
  if (errno == ERANGE || end != terminated.data() + terminated.size()) return {};
  return number;
}

}  // namespace vorrin
