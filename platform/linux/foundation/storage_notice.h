#pragma once

#include <string>
#include <string_view>

namespace vorrin {

/// Writes "vorrin: `message`" as one line to standard error. Control characters, which a path may
/// hold, are shown as question marks.
void tell(std::string message);

/// The same, but each message only once in the life of the process.
void tellOnce(const std::string& message);

}  // namespace vorrin
