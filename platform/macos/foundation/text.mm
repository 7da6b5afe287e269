#include "platform/text.h"

#include <xlocale.h>

#include <cerrno>
#include <cstdlib>

#include "platform/macos/foundation/ns_string.h"

namespace vorrin {

std::string trimmed(std::string_view text) {
  NSString* all = nsString(text);
  NSCharacterSet* kept = NSCharacterSet.whitespaceAndNewlineCharacterSet.invertedSet;
  const NSRange first = [all rangeOfCharacterFromSet:kept];
  if (first.location == NSNotFound) return {};
  const NSRange last = [all rangeOfCharacterFromSet:kept options:NSBackwardsSearch];
  // Cut from the bytes given, so that those which are not UTF-8 stay what they are.
  const std::size_t leading = standardString([all substringToIndex:first.location]).size();
  const std::size_t trailing = standardString([all substringFromIndex:NSMaxRange(last)]).size();
  return std::string(text.substr(leading, text.size() - leading - trailing));
}

std::size_t characterCount(std::string_view text) {
  NSString* characters = nsString(text);
  __block std::size_t count = 0;
  [characters enumerateSubstringsInRange:NSMakeRange(0, characters.length)
                                 options:NSStringEnumerationByComposedCharacterSequences |
                                         NSStringEnumerationSubstringNotRequired
                              usingBlock:^(NSString*, NSRange, NSRange, BOOL*) {
                                ++count;
                              }];
  return count;
}

std::weak_ordering localizedStandardCompare(std::string_view left, std::string_view right) {
  return [nsString(left) localizedStandardCompare:nsString(right)] <=> NSOrderedSame;
}

std::optional<double> parseNumber(std::string_view text) {
  constexpr std::string_view blanks = "\t\n\v\f\r ";
  if (text.empty() || blanks.find(text.front()) != std::string_view::npos) return std::nullopt;
  const std::string terminated(text);
  char* end = nullptr;
  errno = 0;
  // A null locale is the C locale here.
  const double number = strtod_l(terminated.c_str(), &end, nullptr);
  if (end != terminated.c_str() + terminated.size() || errno == ERANGE) return std::nullopt;
  return number;
}

}  // namespace vorrin
