#include "platform/linux/foundation/collation.h"

#include <stdlib.h>
#include <unicode/uloc.h>

#include <array>
#include <cstdint>

#include "platform/linux/foundation/icu_status.h"

namespace vorrin {

namespace {

using LocaleName = std::array<char, ULOC_FULLNAME_CAPACITY>;

/// ICU's name of a locale; the root locale's for what is none.
LocaleName icuName(const std::string& locale) {
  LocaleName name{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_canonicalize(locale.c_str(), name.data(), static_cast<std::int32_t>(name.size()), &status);
  return U_SUCCESS(status) && status != U_STRING_NOT_TERMINATED_WARNING ? name : LocaleName{};
}

}  // namespace

std::string collationLocale() {
  for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
    const char* const value = ::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

Collation::Collation(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  collator_.reset(ucol_open(icuName(locale).data(), &status));
  requireSuccess(status);
  ucol_setAttribute(collator_.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
  requireSuccess(status);
}

std::weak_ordering Collation::compare(std::string_view left, std::string_view right) const {
  UErrorCode status = U_ZERO_ERROR;
  const auto order =
      ucol_strcollUTF8(collator_.get(), left.data(), static_cast<std::int32_t>(left.size()),
                       right.data(), static_cast<std::int32_t>(right.size()), &status);
  requireSuccess(status);
  return order <=> 0;
}

}  // namespace vorrin
