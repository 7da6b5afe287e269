#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorrin {

/// All texts are UTF-8. Bytes that are not UTF-8 are treated as replacement characters and never
/// crash.

/// `text` without leading and trailing Unicode white space and line breaks.
std::string trimmed(std::string_view text);

/// Number of characters as a user counts them (extended grapheme clusters).
std::size_t characterCount(std::string_view text);

/// `text`, or what `fits` of it: as many characters of its beginning and its end as can be, with an
/// ellipsis between them. Without any character it is taken to fit.
std::string shortenedInMiddle(const std::string& text,
                              const std::function<bool(const std::string&)>& fits);

/// Puts names into the order in which they are shown to the user: by the rules of the user's
/// language, without regard to case, runs of digits by their number ("Preset 2" before
/// "Preset 10"). Names that are the same by these rules stay in their order.
void localizedStandardSort(std::vector<std::string>& names);

/// The C library's `strtod` in the C locale on exactly the whole of `text`, whatever the user's
/// locale: nothing when text is empty, begins with white space, is not a number to its last byte,
/// or lies outside the range of double (overflow and underflow). May give infinity or NaN for their
/// names.
std::optional<double> parseNumber(std::string_view text);

}  // namespace vorrin
