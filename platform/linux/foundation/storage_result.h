#pragma once

#include <string>

namespace vorrin {

/// How an operation on a domain's file ended.
enum class StorageStatus {
  done,
  missing,      ///< there is no file
  busy,         ///< another process has held the lock for too long
  stale,        ///< the open file is no longer the one at the path, or its form has changed
  damaged,      ///< the file is not a database, or not one of this program
  newer,        ///< a later version of the program has made a form that this one cannot use
  unavailable,  ///< the system refuses: permissions, space, faults of the medium
};

struct StorageResult {
  StorageStatus status = StorageStatus::done;
  std::string cause;  ///< in words; empty when done

  [[nodiscard]] bool isDone() const { return status == StorageStatus::done; }
};

}  // namespace vorrin
