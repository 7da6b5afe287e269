#include "platform/portable/json_text.h"

namespace vorrin {

namespace {

/// The parser itself has no limit, and needs seconds for a few megabytes of brackets.
bool isTooDeep(std::string_view json) {
  constexpr int deepest = 512;
  int depth = 0;
  bool quoted = false;
  for (std::size_t place = 0; place < json.size() && depth <= deepest; ++place) {
    const char character = json[place];
    if (character == '"') {
      quoted = !quoted;
    } else if (quoted) {
      if (character == '\\') ++place;
    } else if (character == '[' || character == '{') {
      ++depth;
    } else if (character == ']' || character == '}') {
      --depth;
    }
  }
  return depth > deepest;
}

}  // namespace

std::optional<nlohmann::json> parsedJson(std::string_view text) {
  // The parser would take a NUL for the end of the text and not look at what follows.
  const bool holdsNul = text.find('\0') != text.npos;
  if (holdsNul || isTooDeep(text)) return std::nullopt;
  auto json = nlohmann::json::parse(text, nullptr, false);
  if (json.is_discarded()) return std::nullopt;
  return json;
}

}  // namespace vorrin
