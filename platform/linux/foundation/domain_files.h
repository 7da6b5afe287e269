#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/linux/foundation/lock_patience.h"
#include "platform/linux/foundation/storage_result.h"

namespace vorrin {

// A domain's database is made, set aside and removed by one process at a time, which holds a lock
// on its directory meanwhile.

/// Makes an empty file for the domain at `file` that only this user can read, and the directories
/// above it. Done also when the file is there already.
StorageResult makeDomainFile(const std::filesystem::path& file, LockPatience& patience);

/// Renames the file of a domain, and what SQLite keeps beside it, to
/// "FILE.`reason`-YYYYMMDD-HHMMSS", which becomes `newName`. Does nothing when `replaced` tells,
/// under the lock, that another process has already put a new file there.
StorageResult setDomainFileAside(const std::filesystem::path& file, const std::string& reason,
                                 const std::function<bool()>& replaced, LockPatience& patience,
                                 std::filesystem::path& newName);

/// Removes the file of a domain and all files made from it, and the directories that are empty
/// then and were made for it.
void removeDomainFiles(const std::filesystem::path& file);

}  // namespace vorrin
