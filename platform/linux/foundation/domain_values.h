#pragma once

#include <sqlite3.h>

#include <optional>

#include "platform/user_defaults.h"

namespace vorrin {

/// Binds the name of `value`'s type to parameter `index` of `statement` and the value itself to the
/// next. The texts and bytes of `value` must outlive the binding.
int bindValue(sqlite3_stmt* statement, int index, const DefaultsObject& value);

/// The value of a row whose column `index` holds the name of a type and whose next column holds a
/// value; nothing when the two do not agree.
std::optional<DefaultsObject> columnValue(sqlite3_stmt* statement, int index);

}  // namespace vorrin
