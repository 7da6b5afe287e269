#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "settings/preset.h"

namespace vorrin {

/// Presets as JSON. A preset is an object with the members "intervals" (numbers), "keys"
/// (integers), "digit" (an integer) and "enabled" (booleans); a set of named presets is an object
/// of such objects, with the names as its member names. The order of members means nothing, and
/// members of other names are passed over.

/// Nothing when an interval is infinite or not a number, for JSON has no such numbers.
std::optional<std::string> encodePreset(const Preset& preset);

/// Nothing when `json` is malformed or nested deeper than 512 levels, a member is missing or of
/// another type, or a key code lies outside 0 to 65535. Lengths and ranges are otherwise free: ask
/// `Preset::valid` before use. A number with no fraction counts as an integer, however it is
/// written.
std::optional<Preset> decodePreset(std::string_view json);

/// Nothing when a preset cannot be encoded or a name is not UTF-8.
std::optional<std::string> encodePresets(const std::map<std::string, Preset>& presets);

/// Nothing when `json` is malformed, nested too deep, or a single preset in it cannot be decoded.
std::optional<std::map<std::string, Preset>> decodePresets(std::string_view json);

}  // namespace vorrin
