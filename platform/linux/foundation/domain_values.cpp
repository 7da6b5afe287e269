#include "platform/linux/foundation/domain_values.h"

#include <limits>
#include <string>
#include <string_view>

namespace vorrin {

namespace {

constexpr const char* booleanType = "boolean";
constexpr const char* integerType = "integer";
constexpr const char* realType = "real";
constexpr const char* textType = "text";
constexpr const char* dataType = "data";

struct ValueBinder {
  sqlite3_stmt* statement;
  int index;

  int operator()(bool value) const {
    bindType(booleanType);
    return sqlite3_bind_int(statement, index + 1, value ? 1 : 0);
  }
  int operator()(std::int64_t value) const {
    bindType(integerType);
    return sqlite3_bind_int64(statement, index + 1, value);
  }
  int operator()(double value) const {
    bindType(realType);
    return sqlite3_bind_double(statement, index + 1, value);
  }
  int operator()(const std::string& value) const {
    bindType(textType);
    return sqlite3_bind_text64(statement, index + 1, value.data(), value.size(), SQLITE_STATIC,
                               SQLITE_UTF8);
  }
  int operator()(const Data& value) const {
    bindType(dataType);
    return sqlite3_bind_blob64(statement, index + 1, value.bytes.data(), value.bytes.size(),
                               SQLITE_STATIC);
  }

  void bindType(const char* name) const {
    sqlite3_bind_text(statement, index, name, -1, SQLITE_STATIC);
  }
};

std::string columnBytes(sqlite3_stmt* statement, int index) {
  // Empty bytes come as a null pointer.
  const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement, index));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, index));
  return bytes == nullptr ? std::string() : std::string(bytes, size);
}

}  // namespace

int bindValue(sqlite3_stmt* statement, int index, const DefaultsObject& value) {
  return std::visit(ValueBinder{statement, index}, value);
}

std::optional<DefaultsObject> columnValue(sqlite3_stmt* statement, int index) {
  const std::string type = columnBytes(statement, index);
  const int value = index + 1;
  switch (sqlite3_column_type(statement, value)) {
    case SQLITE_INTEGER:
      if (type == booleanType) return sqlite3_column_int(statement, value) != 0;
      if (type == integerType) return std::int64_t{sqlite3_column_int64(statement, value)};
      break;
    case SQLITE_FLOAT:
      if (type == realType) return sqlite3_column_double(statement, value);
      break;
    case SQLITE_TEXT:
      if (type == textType) return columnBytes(statement, value);
      break;
    case SQLITE_BLOB:
      if (type == dataType) return Data{columnBytes(statement, value)};
      break;
    default:
      // SQLite stores what is not a number as null.
      if (type == realType) return std::numeric_limits<double>::quiet_NaN();
      break;
  }
  return {};
}

}  // namespace vorrin
