#include "platform/text.h"

#include <locale.h>
#include <stdlib.h>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

#include <cerrno>
#include <cstdint>
#include <memory>

#include "platform/linux/foundation/collation.h"
#include "platform/linux/foundation/icu_status.h"

namespace vorrin {

namespace {

using BreakIterator = std::unique_ptr<UBreakIterator, decltype([](auto* it) { ubrk_close(it); })>;
using TextView = std::unique_ptr<UText, decltype([](auto* it) { utext_close(it); })>;

TextView viewOf(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  TextView view(
      utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status));
  requireSuccess(status);
  return view;
}

/// The breaks between extended grapheme clusters, the same in every language.
UBreakIterator* characterBreaks() {
  static const BreakIterator breaks = [] {
    UErrorCode status = U_ZERO_ERROR;
    BreakIterator opened(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
    requireSuccess(status);
    return opened;
  }();
  return breaks.get();
}

}  // namespace

std::string trimmed(std::string_view text) {
  const auto view = viewOf(text);
  std::int64_t begin = 0;
  for (UChar32 next = utext_next32From(view.get(), 0); u_isUWhiteSpace(next);
       next = utext_next32(view.get())) {
    begin = utext_getNativeIndex(view.get());
  }
  auto end = static_cast<std::int64_t>(text.size());
  for (UChar32 previous = utext_previous32From(view.get(), end);
       end > begin && u_isUWhiteSpace(previous); previous = utext_previous32(view.get())) {
    end = utext_getNativeIndex(view.get());
  }
  return std::string(
      text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
}

std::size_t characterCount(std::string_view text) {
  const auto view = viewOf(text);
  UErrorCode status = U_ZERO_ERROR;
  UBreakIterator* const breaks = characterBreaks();
  ubrk_setUText(breaks, view.get(), &status);
  requireSuccess(status);
  std::size_t count = 0;
  while (ubrk_next(breaks) != UBRK_DONE) ++count;
  return count;
}

std::weak_ordering localizedStandardCompare(std::string_view left, std::string_view right) {
  static const Collation collation(collationLocale());
  return collation.compare(left, right);
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
