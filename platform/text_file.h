#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vorrin {

/// The current user's home directory. It need not exist.
std::filesystem::path homeDirectory();

/// The whole file as UTF-8 text; nothing on any error, or when it is not UTF-8.
std::optional<std::string> readTextFile(const std::filesystem::path& path);

/// Replaces the file by `text` in one step: a reader sees the old text or the new one, never a
/// part. Makes no directory. False when the file could not be written; nothing is left behind then.
bool writeTextFileAtomically(const std::filesystem::path& path, std::string_view text);

}  // namespace vorrin
