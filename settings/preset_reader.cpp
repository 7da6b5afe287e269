#include "settings/preset_reader.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/portable/json_text.h"
#include "settings/whole_number.h"

namespace vorrin {
namespace {

using Json = nlohmann::json;

constexpr std::size_t macros = 2;
constexpr std::array<std::string_view, 4> memberNames{"intervals", "keys", "digit", "enabled"};

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

template <class T>
bool append(std::vector<T>& list, const std::optional<T>& element) {
  if (element) list.push_back(*element);
  return element.has_value();
}

}  // namespace

std::optional<std::map<std::string, Preset>> PresetReader::presets() && {
  if (!illFormed_.empty()) return std::nullopt;
  return std::move(presets_);
}

bool PresetReader::start_object(std::size_t) {
  if (depth_ == ofPresets) beginPreset();
  if (depth_ == ofList) isRead_[member_] = false;
  return ++depth_ <= deepestJson;
}

void PresetReader::beginPreset() {
  preset_ = {};
  isRead_ = {};
  member_ = other;
}

bool PresetReader::key(std::string& name) {
  if (depth_ == ofPresets) name_ = name;
  if (depth_ == ofPreset) {
    const auto* const found = std::find(memberNames.begin(), memberNames.end(), name);
    member_ = static_cast<Member>(found - memberNames.begin());
    isRead_[member_] = false;
  }
  return true;
}

bool PresetReader::end_object() {
  --depth_;
  if (depth_ == ofPresets) endPreset();
  return true;
}

void PresetReader::endPreset() {
  if (std::all_of(isRead_.begin(), isRead_.begin() + other, [](bool is) { return is; })) {
    illFormed_.erase(name_);
    presets_.insert_or_assign(presets_.end(), name_, std::move(preset_));
  } else {
    illFormed_.insert(name_);
  }
}

bool PresetReader::start_array(std::size_t) {
  if (depth_ == ofPresets) illFormed_.insert(name_);
  if (depth_ == ofPreset) isRead_[member_] = beginList();
  if (depth_ == ofList) isRead_[member_] = false;
  const bool isInside = depth_ > 0;
  return ++depth_ <= deepestJson && isInside;
}

/// False where no list belongs.
bool PresetReader::beginList() {
  const auto begin = [](auto& list) {
    list.clear();
    list.reserve(macros);
    return true;
  };
  switch (member_) {
    case intervals:
      return begin(preset_.intervals);
    case keys:
      return begin(preset_.keys);
    case enabled:
      return begin(preset_.enabled);
    default:
      return false;
  }
}

bool PresetReader::end_array() {
  --depth_;
  return true;
}

bool PresetReader::read(const Json& scalar) {
  if (depth_ == ofPresets) illFormed_.insert(name_);
  if (depth_ == ofPreset && member_ == digit) {
    const auto integer = integerOf(scalar);
    isRead_[digit] = integer.has_value();
    preset_.digit = integer.value_or(0);
  }
  if (depth_ == ofList && !readElement(scalar)) isRead_[member_] = false;
  return depth_ != 0;
}

bool PresetReader::readElement(const Json& element) {
  switch (member_) {
    case intervals:
      return append(preset_.intervals, numberOf(element));
    case keys:
      return append(preset_.keys, keyCodeOf(element));
    case enabled:
      return append(preset_.enabled, booleanOf(element));
    default:
      return true;
  }
}

}  // namespace vorrin
