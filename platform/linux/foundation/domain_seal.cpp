#include "platform/linux/foundation/domain_seal.h"

#include <array>
#include <bit>
#include <memory>

namespace vorrin {

namespace {

struct Finalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

Statement prepare(sqlite3* database, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
  return Statement(statement);
}

/// The 64-bit hash FNV-1a: any two inputs that differ in one byte differ in it, and others as good
/// as always.
class Digest {
 public:
  void add(const void* data, std::size_t size) {
    const auto* const bytes = static_cast<const unsigned char*>(data);
    for (std::size_t index = 0; index < size; ++index) {
      value_ = (value_ ^ bytes[index]) * 0x100000001B3U;
    }
  }
  void add(std::uint64_t number) { add(&number, sizeof number); }
  [[nodiscard]] sqlite3_int64 value() const { return std::bit_cast<sqlite3_int64>(value_); }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

void addColumn(Digest& digest, sqlite3_stmt* row, int column) {
  const int type = sqlite3_column_type(row, column);
  digest.add(static_cast<std::uint64_t>(type));
  if (type == SQLITE_INTEGER) {
    digest.add(static_cast<std::uint64_t>(sqlite3_column_int64(row, column)));
  } else if (type == SQLITE_FLOAT) {
    digest.add(std::bit_cast<std::uint64_t>(sqlite3_column_double(row, column)));
  } else {
    const void* const bytes = sqlite3_column_blob(row, column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
    digest.add(std::uint64_t{size});
    digest.add(bytes, size);
  }
}

/// Of all keys, types and values.
std::optional<sqlite3_int64> digestOfValues(sqlite3* database) {
  const auto rows = prepare(database, "SELECT key, type, value FROM defaults ORDER BY key");
  if (!rows) return std::nullopt;
  Digest digest;
  int code = 0;
  while ((code = sqlite3_step(rows.get())) == SQLITE_ROW) {
    for (const int column : {0, 1, 2}) addColumn(digest, rows.get(), column);
  }
  if (code != SQLITE_DONE) return std::nullopt;
  return digest.value();
}

/// So that damage to the seal is not taken for a change made by somebody else.
sqlite3_int64 digestOfSeal(sqlite3_int64 values, sqlite3_int64 change) {
  Digest digest;
  digest.add(static_cast<std::uint64_t>(values));
  digest.add(static_cast<std::uint64_t>(change));
  return digest.value();
}

std::uint32_t bigEndianNumber(std::span<const unsigned char, 4> bytes) {
  std::uint32_t number = 0;
  for (const unsigned char byte : bytes) number = (number << 8U) | byte;
  return number;
}

/// The number of the last change of the file, which SQLite keeps at two places of its header;
/// nothing when they do not agree. Both are 0 in an empty file.
std::optional<std::uint32_t> changeNumber(sqlite3* database) {
  std::array<unsigned char, 4> first{};
  std::array<unsigned char, 4> second{};
  if (!readFile(database, 24, first) || !readFile(database, 92, second)) return 0;
  if (first != second) return std::nullopt;
  return bigEndianNumber(first);
}

// One statement at a time: SQLite's account of a failure lasts until another one is finished.

std::optional<bool> hasSealTable(sqlite3* database) {
  const auto table =
      prepare(database, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'seal'");
  const int code = table ? sqlite3_step(table.get()) : SQLITE_ERROR;
  if (code != SQLITE_ROW && code != SQLITE_DONE) return std::nullopt;
  return code == SQLITE_ROW;
}

struct StoredSeal {
  sqlite3_int64 contents = 0;
  sqlite3_int64 change = 0;
  sqlite3_int64 own = 0;
};

/// All zeros when the table is empty, which is no seal that anybody made.
std::optional<StoredSeal> readSeal(sqlite3* database) {
  const auto row = prepare(database, "SELECT contents, change, own FROM seal WHERE number = 1");
  const int code = row ? sqlite3_step(row.get()) : SQLITE_ERROR;
  if (code == SQLITE_DONE) return StoredSeal{};
  if (code != SQLITE_ROW) return std::nullopt;
  return StoredSeal{sqlite3_column_int64(row.get(), 0), sqlite3_column_int64(row.get(), 1),
                    sqlite3_column_int64(row.get(), 2)};
}

}  // namespace

bool makeSealTable(sqlite3* database) {
  return sqlite3_exec(database,
                      "CREATE TABLE IF NOT EXISTS seal "
                      "(number INTEGER PRIMARY KEY, contents INTEGER, change INTEGER, own INTEGER)",
                      nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::uint32_t nextChange(sqlite3* database) {
  return changeNumber(database).value_or(0) + 1;
}

bool seal(sqlite3* database, std::uint32_t change) {
  const auto values = digestOfValues(database);
  const auto statement = prepare(database, "INSERT OR REPLACE INTO seal VALUES (1, ?, ?, ?)");
  if (!values || !statement) return false;
  sqlite3_bind_int64(statement.get(), 1, *values);
  sqlite3_bind_int64(statement.get(), 2, change);
  sqlite3_bind_int64(statement.get(), 3, digestOfSeal(*values, change));
  return sqlite3_step(statement.get()) == SQLITE_DONE;
}

std::optional<SealState> inspectSeal(sqlite3* database) {
  const auto isThere = hasSealTable(database);
  if (!isThere) return std::nullopt;
  if (!*isThere) return SealState::absent;
  const auto stored = readSeal(database);
  const auto lastChange = changeNumber(database);
  if (!stored) return std::nullopt;
  if (!lastChange || stored->own != digestOfSeal(stored->contents, stored->change)) {
    return SealState::broken;
  }
  if (stored->change != *lastChange) return SealState::fits;
  const auto contents = digestOfValues(database);
  if (!contents) return std::nullopt;
  return *contents == stored->contents ? SealState::fits : SealState::broken;
}

bool readFile(sqlite3* database, std::int64_t offset, std::span<unsigned char> bytes) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file));
  return file != nullptr && file->pMethods != nullptr &&
         file->pMethods->xRead(file, bytes.data(), static_cast<int>(bytes.size()), offset) ==
             SQLITE_OK;
}

}  // namespace vorrin
