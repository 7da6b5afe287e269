#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace vorrin {

/// How many objects and lists may lie in one another: the limit of macOS's own decoder, for what
/// walks through a value may take room on the stack for every level.
constexpr int deepestJson = 512;

/// Whether `text` is JSON to its last byte, and no deeper than that.
bool isJson(std::string_view text);

/// Hands the values and names in `text` to `reader`, one after another. False when `text` is no
/// JSON to its last byte, or the reader refuses.
bool readJson(std::string_view text, nlohmann::json_sax<nlohmann::json>& reader);

/// `json`, which is JSON, without the white space between its parts.
std::string compactJson(std::string_view json);

/// `json`, which is compact JSON, with a line for each member of the outermost object or list.
std::string jsonInLines(std::string_view json);

/// The texts of an object's members by their names. Of two with one name the last counts. `object`
/// is JSON.
std::map<std::string, std::string> jsonMembers(std::string_view object);

}  // namespace vorrin
