#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/user_defaults.h"

namespace vorrin {

/// A value of a domain as JSON. Truth values, numbers and texts are those of JSON; a number with a
/// fraction or an exponent is a real. Data that are JSON without white space stand as
/// {"json": VALUE}, so that a reader sees what is in them, others as {"base64": TEXT}.
struct StoredValue {
  std::string json;                      ///< as it is written, or as others wrote it
  std::optional<DefaultsObject> object;  ///< nothing where it is none of the above

  bool operator==(const StoredValue&) const = default;
};

StoredValue storedValue(const DefaultsObject& object);

/// A domain's values by their keys.
using Domain = std::map<std::string, StoredValue>;

/// The JSON object that holds the whole domain, a line for each key.
std::string textOf(const Domain& domain);

/// The domain that `text` holds, an empty one if it holds nothing but white space; nothing when it
/// cannot be understood. Nested too deep counts as that.
std::optional<Domain> parsedDomain(std::string_view text);

}  // namespace vorrin
