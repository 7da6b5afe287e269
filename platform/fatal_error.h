#pragma once

#include <cstdio>
#include <cstdlib>
#include <source_location>
#include <string_view>

namespace vorrin {

/// Ends the process abnormally with "KIND: MESSAGE: file FILE, line LINE" on standard error, the
/// form of diagnostic for broken invariants and failed self-checks.
[[noreturn]] inline void endWithDiagnostic(std::string_view kind, std::string_view message,
                                           std::source_location place) {
  std::fflush(stdout);
  std::fprintf(stderr, "%.*s: %.*s: file %s, line %u\n", static_cast<int>(kind.size()), kind.data(),
               static_cast<int>(message.size()), message.data(), place.file_name(),
               static_cast<unsigned>(place.line()));
  std::abort();
}

/// A situation that cannot happen unless the program is wrong.
[[noreturn]] inline void fatalError(std::string_view message,
                                    std::source_location place = std::source_location::current()) {
  endWithDiagnostic("Fatal error", message, place);
}

/// Ends the process with "Assertion failed" unless `holds`. Active in every build.
inline void assertThat(bool holds, std::string_view check,
                       std::source_location place = std::source_location::current()) {
  if (!holds) endWithDiagnostic("Assertion failed", check, place);
}

/// Ends the process with "Precondition failed" unless `holds`. Active in every build.
inline void precondition(bool holds, std::string_view check,
                         std::source_location place = std::source_location::current()) {
  if (!holds) endWithDiagnostic("Precondition failed", check, place);
}

}  // namespace vorrin
