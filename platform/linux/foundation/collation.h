#pragma once

#include <unicode/ucol.h>

#include <compare>
#include <memory>
#include <string>
#include <string_view>

namespace vorrin {

/// The locale that the user's environment names for the order of texts, by the precedence that
/// POSIX gives: LC_ALL, LC_COLLATE, LANG. Empty when it names none.
std::string collationLocale();

/// The order of names by the rules of one language, digits by their number and case last.
class Collation {
 public:
  /// `locale` is written as in the environment, for instance "sv_SE.UTF-8". "C", "POSIX" and
  /// unknown languages get the order that is common to all languages.
  explicit Collation(const std::string& locale);

  [[nodiscard]] std::weak_ordering compare(std::string_view left, std::string_view right) const;

 private:
  struct Closer {
    void operator()(UCollator* collator) const { ucol_close(collator); }
  };
  std::unique_ptr<UCollator, Closer> collator_;
};

}  // namespace vorrin
