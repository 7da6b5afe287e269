#pragma once

#include <filesystem>
#include <string_view>

namespace vorrin {

/// Removes the files in `preferences` whose names begin with `prefix` and that hold an empty
/// property list. The preferences daemon may write one for a domain some time after the domain was
/// removed; it would still be listed as a domain.
void removeEmptyDomains(const std::filesystem::path& preferences, std::string_view prefix);

}  // namespace vorrin
