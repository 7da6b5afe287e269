#include "platform/linux/foundation/domain_connection.h"

#include <array>
#include <cerrno>
#include <system_error>

#include "platform/linux/foundation/domain_seal.h"
#include "platform/linux/foundation/domain_values.h"

namespace vorrin {

namespace {

// Files of the first version have no seal.
constexpr int formatVersion = 2;
constexpr const char* setFormatVersion = "PRAGMA user_version=2";
// "VRRN", by which file(1) and others can tell whose database this is.
constexpr const char* setApplication = "PRAGMA application_id=0x5652524E";

// The column of the values has no type of its own: each value keeps the one it was stored with.
constexpr const char* createTable =
    "CREATE TABLE defaults (key TEXT NOT NULL PRIMARY KEY, type TEXT NOT NULL, value) "
    "WITHOUT ROWID";
constexpr const char* selectTable =
    "SELECT coalesce(max(sql), '') FROM sqlite_master WHERE type = 'table' AND name = 'defaults'";
constexpr const char* selectValue = "SELECT type, value FROM defaults WHERE key = ?";
constexpr const char* upsertValue =
    "INSERT INTO defaults (key, type, value) VALUES (?, ?, ?) "
    "ON CONFLICT (key) DO UPDATE SET type = excluded.type, value = excluded.value";

int bindKey(sqlite3_stmt* statement, const std::string& key) {
  return sqlite3_bind_text64(statement, 1, key.data(), key.size(), SQLITE_STATIC, SQLITE_UTF8);
}

StorageStatus statusOf(int code) {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return StorageStatus::done;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return StorageStatus::busy;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return StorageStatus::damaged;
    case SQLITE_ERROR:     // the table is no longer what it was at the inspection
    case SQLITE_READONLY:  // the file has moved, or could not be written when it was opened
      return StorageStatus::stale;
    default:
      return StorageStatus::unavailable;
  }
}

/// SQLite refuses to write, and never says why, a file whose header asks for a later SQLite.
bool asksForLaterSqlite(sqlite3* database) {
  constexpr std::int64_t writeVersionOffset = 18;
  constexpr unsigned char latestWriteVersion = 2;
  std::array<unsigned char, 1> version{};
  return readFile(database, writeVersionOffset, version) && version[0] > latestWriteVersion;
}

}  // namespace

DomainConnection::DomainConnection(const std::filesystem::path& path, LockPatience& patience) {
  sqlite3* opened = nullptr;
  sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(opened);
  sqlite3_busy_handler(
      opened,
      [](void* context, int) -> int {
        return static_cast<LockPatience*>(context)->waitOn() ? 1 : 0;
      },
      &patience);
}

StorageResult DomainConnection::inspect() {
  if (sqlite3_errcode(database_.get()) != SQLITE_OK) return unreadable();
  // All that is looked at has to be of one moment.
  execute("BEGIN");
  auto result = inspectForm();
  if (result.isDone() && !blank_) result = inspectValues();
  execute("COMMIT");
  return result;
}

StorageResult DomainConnection::inspectForm() {
  std::string version;
  std::string objects;
  std::string table;
  std::string check;
  const bool readable = query("PRAGMA user_version", version) &&
                        query("SELECT count(*) FROM sqlite_master", objects) &&
                        query(selectTable, table) && query("PRAGMA integrity_check(1)", check);
  if (!readable) return unreadable();
  if (check != "ok") return {StorageStatus::damaged, check};
  if (asksForLaterSqlite(database_.get())) return {StorageStatus::damaged, "unknown file format"};
  blank_ = objects == "0";
  version_ = std::stoi(version);
  if (blank_ || table == createTable) return {};
  if (version_ <= formatVersion) return {StorageStatus::damaged, "not a settings file"};
  if (prepare(selectValue) && prepare(upsertValue)) return {};
  return {StorageStatus::newer, "made by a later version"};
}

StorageResult DomainConnection::inspectValues() {
  const auto state = inspectSeal(database_.get());
  if (!state) return unreadable();
  const bool isLost = *state == SealState::absent && version_ == formatVersion;
  if (*state != SealState::broken && !isLost) return {};
  return {StorageStatus::damaged, "values are not what was written"};
}

StorageResult DomainConnection::unreadable() const {
  auto result = lastResult();
  if (result.status == StorageStatus::stale) result.status = StorageStatus::damaged;
  return result;
}

bool DomainConnection::hasMoved() const {
  int moved = 0;
  sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved != 0;
}

StorageResult DomainConnection::read(const std::string& key, std::optional<DefaultsObject>& value) {
  const auto statement = prepare(selectValue);
  if (!statement || bindKey(statement.get(), key) != SQLITE_OK) return lastResult();
  const int code = sqlite3_step(statement.get());
  if (code == SQLITE_ROW) value = columnValue(statement.get(), 0);
  return lastResult();
}

StorageResult DomainConnection::write(
    std::span<const std::pair<std::string, DefaultsObject>> values) {
  // A rollback journal works on every file system; a write-ahead log needs memory shared between
  // processes. The file keeps its mode, which another program may have changed.
  const bool begun = execute("PRAGMA journal_mode=DELETE") && execute("PRAGMA synchronous=FULL") &&
                     execute("BEGIN IMMEDIATE");
  const std::uint32_t change = nextChange(database_.get());
  const bool written = begun && (!blank_ || makeTable()) && makeSeal() && upsert(values) &&
                       seal(database_.get(), change) && execute("COMMIT");
  auto result = written ? StorageResult() : lastResult();
  if (written) blank_ = false;
  if (sqlite3_get_autocommit(database_.get()) == 0) execute("ROLLBACK");
  return result;
}

bool DomainConnection::makeTable() {
  std::string table;
  if (!query(selectTable, table)) return false;
  // Another process may have made it since the inspection.
  return table == createTable || (execute(createTable) && execute(setApplication));
}

bool DomainConnection::makeSeal() {
  return makeSealTable(database_.get()) && (version_ >= formatVersion || execute(setFormatVersion));
}

bool DomainConnection::upsert(std::span<const std::pair<std::string, DefaultsObject>> values) {
  const auto statement = prepare(upsertValue);
  if (!statement) return false;
  for (const auto& [key, value] : values) {
    sqlite3_reset(statement.get());
    if (bindKey(statement.get(), key) != SQLITE_OK ||
        bindValue(statement.get(), 2, value) != SQLITE_OK ||
        sqlite3_step(statement.get()) != SQLITE_DONE) {
      return false;
    }
  }
  return true;
}

DomainConnection::Statement DomainConnection::prepare(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database_.get(), sql, -1, &statement, nullptr);
  return Statement(statement);
}

bool DomainConnection::execute(const char* sql) {
  return sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool DomainConnection::query(const char* sql, std::string& text) {
  const auto statement = prepare(sql);
  if (!statement || sqlite3_step(statement.get()) != SQLITE_ROW) return false;
  const auto* const column = sqlite3_column_text(statement.get(), 0);
  if (column != nullptr) text = reinterpret_cast<const char*>(column);
  return true;
}

StorageResult DomainConnection::lastResult() const {
  const int code = sqlite3_extended_errcode(database_.get());
  StorageResult result{statusOf(code), {}};
  if (result.isDone()) return result;
  result.cause = sqlite3_errmsg(database_.get());
  if (result.status != StorageStatus::unavailable) return result;
  const int systemError = sqlite3_system_errno(database_.get());
  if (systemError != 0) result.cause += ": " + std::generic_category().message(systemError);
  // To look for the file instead would tell how things are by now: another process may be making a
  // new one.
  const bool isMissing = systemError == ENOENT || systemError == ENOTDIR;
  if ((code & 0xFF) == SQLITE_CANTOPEN && isMissing) result.status = StorageStatus::missing;
  return result;
}

}  // namespace vorrin
