#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "platform/linux/foundation/lock_patience.h"
#include "platform/linux/foundation/storage_result.h"
#include "platform/user_defaults.h"

namespace vorrin {

/// The open database of one domain: a table of keys, the names of their values' types and the
/// values.
class DomainConnection {
 public:
  /// Opens the file at `path`, which must exist, without looking into it. `patience` is asked
  /// whenever the file is locked and must outlive the connection.
  DomainConnection(const std::filesystem::path& path, LockPatience& patience);

  /// Looks whether the file is sound and has a form that this program can use. To be done before
  /// anything else.
  [[nodiscard]] StorageResult inspect();

  /// Whether the path no longer leads to the file that was opened.
  [[nodiscard]] bool hasMoved() const;

  /// Whether the file holds nothing at all yet, not even the table.
  [[nodiscard]] bool isBlank() const { return blank_; }

  /// Leaves `value` as it is when the key has no value of a known type.
  [[nodiscard]] StorageResult read(const std::string& key, std::optional<DefaultsObject>& value);

  /// Stores all `values` in one transaction, making the table when there is none.
  [[nodiscard]] StorageResult write(std::span<const std::pair<std::string, DefaultsObject>> values);

 private:
  struct Closer {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

  Statement prepare(const char* sql);
  bool execute(const char* sql);
  bool query(const char* sql, std::string& text);
  StorageResult inspectForm();
  StorageResult inspectValues();
  [[nodiscard]] StorageResult unreadable() const;
  bool makeTable();
  bool makeSeal();
  bool upsert(std::span<const std::pair<std::string, DefaultsObject>> values);
  [[nodiscard]] StorageResult lastResult() const;

  std::unique_ptr<sqlite3, Closer> database_;
  bool blank_ = false;
  int version_ = 0;
};

}  // namespace vorrin
