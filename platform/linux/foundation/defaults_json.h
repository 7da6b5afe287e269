#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "platform/user_defaults.h"

namespace vorrin {

// A domain as JSON: an object of its keys and values. Truth values, numbers and texts are those of
// JSON; a number with a fraction or an exponent is a real. Data that are JSON in its short form
// stand as {"json": VALUE}, so that a reader sees what is in them, others as {"base64": TEXT}.

nlohmann::json jsonOf(const DefaultsObject& object);

/// Nothing for a value that is none of the above.
std::optional<DefaultsObject> defaultsObjectOf(const nlohmann::json& json);

/// The domain that `text` holds, an empty one if it holds nothing but white space; nothing when it
/// cannot be understood. Nested too deep counts as that.
std::optional<nlohmann::json> parsedDomain(std::string_view text);

}  // namespace vorrin
