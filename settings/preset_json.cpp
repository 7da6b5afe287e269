#include "settings/preset_json.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/portable/json_text.h"
#include "settings/preset_reader.h"

namespace vorrin {
namespace {

using Json = nlohmann::json;

// Texts are joined here, for a tree of thousands of presets takes four times as long.

std::optional<std::string> textOf(const std::string& name) {
  try {
    return Json(name).dump();
  } catch (const Json::exception&) {  // it is not UTF-8
    return std::nullopt;
  }
}

std::string integerText(std::int64_t integer) {
  return std::to_string(integer);
}

std::string booleanText(bool is) {
  return is ? "true" : "false";
}

template <class List, class TextOf>
std::string listText(const List& list, TextOf textOf) {
  std::string text = "[";
  for (const auto& element : list) {
    if (text.size() > 1) text += ',';
    text += textOf(element);
  }
  return text += ']';
}

}  // namespace

std::optional<std::string> encodePreset(const Preset& preset) {
  const auto isFinite = [](double interval) { return std::isfinite(interval); };
  if (!std::all_of(preset.intervals.begin(), preset.intervals.end(), isFinite)) return std::nullopt;
  return R"({"digit":)" + std::to_string(preset.digit) + R"(,"enabled":)" +
         listText(preset.enabled, booleanText) + R"(,"intervals":)" +
         Json(preset.intervals).dump() + R"(,"keys":)" + listText(preset.keys, integerText) + "}";
}

std::optional<Preset> decodePreset(std::string_view json) {
  PresetReader reader(true);
  if (!readJson(json, reader)) return std::nullopt;
  auto presets = std::move(reader).presets();
  return presets ? std::optional(std::move(presets->begin()->second)) : std::nullopt;
}

std::optional<std::string> encodePresets(const std::map<std::string, Preset>& presets) {
  std::string object = "{";
  for (const auto& [name, preset] : presets) {
    const auto nameText = textOf(name);
    const auto text = encodePreset(preset);
    if (!nameText || !text) return std::nullopt;
    if (object.size() > 1) object += ',';
    object += *nameText + ":" + *text;
  }
  return object + "}";
}

std::optional<std::map<std::string, Preset>> decodePresets(std::string_view json) {
  PresetReader reader;
  if (!readJson(json, reader)) return std::nullopt;
  return std::move(reader).presets();
}

}  // namespace vorrin
