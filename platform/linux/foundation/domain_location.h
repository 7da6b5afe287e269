#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vorrin {

/// Whether `name` can be that of a domain: letters, digits, '-', '.' and '_', not beginning with
/// '.', and short enough for the names of the files made from it.
bool isDomainName(const std::string& name);

/// The file of the domain called `name` in `directory`.
std::filesystem::path domainFile(const std::filesystem::path& directory, const std::string& name);

/// Where the user's settings belong by the XDG Base Directory rules. It need not exist.
std::filesystem::path settingsDirectory();

/// The directories among the temporary files that can stand in where the settings directory cannot
/// be written: those that exist and are this user's own and closed to all others.
std::vector<std::filesystem::path> temporaryDirectories();

/// The first of them, made when there is none; nothing when none can be made.
std::optional<std::filesystem::path> makeTemporaryDirectory();

/// Makes `directory`, and those above it that are missing, for this user alone. True when it exists
/// afterwards; otherwise errno says why not.
bool makeDirectories(const std::filesystem::path& directory);

/// Removes `directory` when it is empty, and then those above it that `makeDirectories` made in
/// this process and that are empty too.
void removeEmptyDirectories(std::filesystem::path directory);

}  // namespace vorrin
