#pragma once

#include <filesystem>
#include <string>

namespace vorrin {

/// "Library/Logs/Vorrin-status.txt" in the user's home directory.
std::filesystem::path statusFilePath();

/// The whole content of the status file: one line with a line feed.
std::string statusLine(bool accessibility, bool eventTap, bool ready);

/// Brings the status file up to date. It is written only when its content would change; failures
/// are passed over. `ready` is what the caller computed for the window.
void updateStatusFile(bool ready);

}  // namespace vorrin
