#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "settings/preset.h"

namespace vorrin::test {

inline Preset startPreset() {
  return {{0.05, 0.001}, {50, 48}, 1, {true, true}};
}

/// A valid preset with nothing in common with `startPreset`.
inline Preset otherPreset() {
  return {{0.12, 0.003}, {97, 98}, 4, {false, false}};
}

/// The start record as JSON.
inline constexpr std::string_view startJson =
    R"({"intervals":[0.05,0.001],"keys":[50,48],"digit":1,"enabled":[true,true]})";

/// The start record with one member written as `value`.
inline std::string presetText(std::string_view member, std::string_view value) {
  std::string json = "{";
  for (const auto& [name, usual] :
       {std::pair<std::string_view, std::string_view>{"intervals", "[0.05,0.001]"},
        {"keys", "[50,48]"},
        {"digit", "1"},
        {"enabled", "[true,true]"}}) {
    if (json.size() > 1) json += ",";
    json += "\"" + std::string(name) + "\":" + std::string(name == member ? value : usual);
  }
  return json + "}";
}

}  // namespace vorrin::test
