#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

namespace vorrin {

/// The value that `text` holds; nothing when it is no JSON to its last byte, or nested deeper than
/// 512 levels, the limit of macOS's own decoder: what walks through a value takes room on the stack
/// for every level.
std::optional<nlohmann::json> parsedJson(std::string_view text);

}  // namespace vorrin
