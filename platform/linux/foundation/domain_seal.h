#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace vorrin {

// SQLite notices damage to the structure of a file, but not to the values in it. So every write
// leaves a seal in a table of its own: a digest of all values, and the number of the file's change
// that it was made for. Whoever edits the file by other means leaves the seal as it is and makes
// further changes, after which it says nothing about the values until the next write.

/// Makes the table of the seal unless it is there. False when SQLite fails, as all of these.
[[nodiscard]] bool makeSealTable(sqlite3* database);

/// The number that the next change of the file will have; to be asked in a transaction that is to
/// write and has not yet.
[[nodiscard]] std::uint32_t nextChange(sqlite3* database);

/// Seals the values as they are now; to be done at the end of that transaction.
[[nodiscard]] bool seal(sqlite3* database, std::uint32_t change);

enum class SealState {
  fits,    ///< the values are as they were written, or were edited by somebody else since
  absent,  ///< there is no seal
  broken,  ///< the values, or the seal, are not what was written
};

/// The state of the seal; nothing when SQLite fails. To be asked in a transaction, for another
/// process may write meanwhile.
[[nodiscard]] std::optional<SealState> inspectSeal(sqlite3* database);

/// Reads from the header of the database's file; false when it is shorter.
[[nodiscard]] bool readFile(sqlite3* database, std::int64_t offset, std::span<unsigned char> bytes);

}  // namespace vorrin
