#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vorrin {

/// Whether `name` can be that of a domain: letters, digits, '-', '.' and '_', not beginning with
/// '.', and short enough for the names of the files made from it.
bool isDomainName(const std::string& name);

/// The file of the domain called `name` in `directory`.
std::filesystem::path domainFile(const std::filesystem::path& directory, const std::string& name);

/// Where the user's settings belong by the XDG Base Directory rules. It need not exist.
std::filesystem::path settingsDirectory();

/// The directory of this user's own among the temporary files that stands in where the settings
/// directory cannot be written. Nothing when it does not exist, or may be another user's.
std::optional<std::filesystem::path> temporaryDirectory();

/// The same, made when it does not exist.
std::optional<std::filesystem::path> makeTemporaryDirectory();

/// Makes `directory`, and those above it that are missing, for this user alone. True when it exists
/// afterwards; otherwise errno says why not.
bool makeDirectories(const std::filesystem::path& directory);

/// Removes `directory` when it is empty, and then those above it that `makeDirectories` made in
/// this process and that are empty too.
void removeEmptyDirectories(std::filesystem::path directory);

}  // namespace vorrin
