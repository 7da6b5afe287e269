#include "settings/preset_json.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "platform/portable/json_text.h"
#include "settings/whole_number.h"

namespace vorrin {
namespace {

using Json = nlohmann::json;

std::optional<Json> jsonOf(const Preset& preset) {
  const auto isFinite = [](double interval) { return std::isfinite(interval); };
  if (!std::all_of(preset.intervals.begin(), preset.intervals.end(), isFinite)) return std::nullopt;
  return Json{{"intervals", preset.intervals},
              {"keys", preset.keys},
              {"digit", preset.digit},
              {"enabled", preset.enabled}};
}

std::optional<std::string> textOf(const Json& json) {
  try {
    return json.dump();
  } catch (const Json::exception&) {  // a string is not UTF-8
    return std::nullopt;
  }
}

std::optional<double> numberOf(const Json& json) {
  if (!json.is_number()) return std::nullopt;
  return json.get<double>();
}

std::optional<std::int64_t> integerOf(const Json& json) {
  if (json.is_number_float()) return wholeNumber(json.get<double>());
  if (!json.is_number_integer()) return std::nullopt;
  if (json.is_number_unsigned() && !std::in_range<std::int64_t>(json.get<std::uint64_t>())) {
    return std::nullopt;
  }
  return json.get<std::int64_t>();
}

std::optional<std::uint16_t> keyCodeOf(const Json& json) {
  const auto integer = integerOf(json);
  if (!integer || !std::in_range<std::uint16_t>(*integer)) return std::nullopt;
  return static_cast<std::uint16_t>(*integer);
}

std::optional<bool> booleanOf(const Json& json) {
  if (!json.is_boolean()) return std::nullopt;
  return json.get<bool>();
}

/// Reads the member `name` of `object` by `elementOf`; false when it is missing or ill-typed.
template <class T, class ElementOf>
bool read(const Json& object, const char* name, std::vector<T>& list, ElementOf elementOf) {
  const auto member = object.find(name);
  if (member == object.end() || !member->is_array()) return false;
  list.reserve(member->size());
  for (const Json& entry : *member) {
    const auto element = elementOf(entry);
    if (!element) return false;
    list.push_back(*element);
  }
  return true;
}

bool read(const Json& object, const char* name, std::int64_t& integer) {
  const auto member = object.find(name);
  if (member == object.end()) return false;
  const auto value = integerOf(*member);
  if (value) integer = *value;
  return value.has_value();
}

std::optional<Preset> presetOf(const Json& json) {
  if (!json.is_object()) return std::nullopt;
  Preset preset;
  const bool complete = read(json, "intervals", preset.intervals, numberOf) &&
                        read(json, "keys", preset.keys, keyCodeOf) &&
                        read(json, "digit", preset.digit) &&
                        read(json, "enabled", preset.enabled, booleanOf);
  if (!complete) return std::nullopt;
  return preset;
}

}  // namespace

std::optional<std::string> encodePreset(const Preset& preset) {
  const auto json = jsonOf(preset);
  if (!json) return std::nullopt;
  return textOf(*json);
}

std::optional<Preset> decodePreset(std::string_view json) {
  const auto value = parsedJson(json);
  return value ? presetOf(*value) : std::nullopt;
}

std::optional<std::string> encodePresets(const std::map<std::string, Preset>& presets) {
  Json object = Json::object();
  for (const auto& [name, preset] : presets) {
    auto json = jsonOf(preset);
    if (!json) return std::nullopt;
    object.emplace(name, *std::move(json));
  }
  return textOf(object);
}

std::optional<std::map<std::string, Preset>> decodePresets(std::string_view json) {
  const auto object = parsedJson(json);
  if (!object || !object->is_object()) return std::nullopt;
  std::map<std::string, Preset> presets;
  for (const auto& [name, member] : object->items()) {
    auto preset = presetOf(member);
    if (!preset) return std::nullopt;
    presets.emplace_hint(presets.end(), name, *std::move(preset));
  }
  return presets;
}

}  // namespace vorrin
