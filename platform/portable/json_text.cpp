#include "platform/portable/json_text.h"

#include <algorithm>

namespace vorrin {

using Json = nlohmann::json;

namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

bool isWhiteSpace(char character) {
  return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}

bool isOpening(char character) {
  return character == '{' || character == '[';
}

bool isClosing(char character) {
  return character == '}' || character == ']';
}

/// The place of the quotation mark that ends the string which one begins at `place`.
std::size_t endOfString(std::string_view text, std::size_t place) {
  for (++place; place < text.size() && text[place] != '"'; ++place) {
    if (text[place] == '\\') ++place;
  }
  return place;
}

/// Tells `visit` of every place in `text` that is in no string, and how many objects and lists are
/// open around it, a bracket being outside of what it opens or closes.
template <class Visit>
void walk(std::string_view text, Visit visit) {
  int depth = 0;
  for (std::size_t place = 0; place < text.size(); ++place) {
    const char character = text[place];
    if (character == '"') {
      place = endOfString(text, place);
      continue;
    }
    if (isClosing(character)) --depth;
    visit(place, depth);
    if (isOpening(character)) ++depth;
  }
}

/// The parser itself has no limit, and needs seconds for a few megabytes of brackets.
bool isTooDeep(std::string_view text) {
  int most = 0;
  walk(text, [&](std::size_t place, int depth) {
    if (depth >= most && isOpening(text[place])) most = depth + 1;
  });
  return most > deepestJson;
}

/// The parser would take a NUL for the end of the text and not look at what follows.
bool holdsNul(std::string_view text) {
  return text.find('\0') != text.npos;
}

std::string_view withoutSpaceAround(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
  return text.substr(0, text.find_last_not_of(whiteSpace) + 1);
}

}  // namespace

bool isJson(std::string_view text) {
  return !holdsNul(text) && !isTooDeep(text) && Json::accept(text);
}

bool readJson(std::string_view text, nlohmann::json_sax<Json>& reader) {
  return !holdsNul(text) && Json::sax_parse(text, &reader);
}

std::string compactJson(std::string_view json) {
  std::string compact;
  std::size_t begin = 0;
  walk(json, [&](std::size_t place, int) {
    if (!isWhiteSpace(json[place])) return;
    compact += json.substr(begin, place - begin);
    begin = place + 1;
  });
  return compact += json.substr(begin);
}

std::string jsonInLines(std::string_view json) {
  if (json == "{}" || json == "[]") return std::string(json);
  std::string lines;
  std::size_t begin = 0;
  const auto breakBefore = [&](std::size_t place, std::string_view lineEnd) {
    lines.append(json, begin, place - begin) += lineEnd;
    begin = place;
  };
  walk(json, [&](std::size_t place, int depth) {
    if (depth > 1) return;
    const char character = json[place];
    if (depth == 0 && isClosing(character)) breakBefore(place, "\n  ");
    if (depth == 0 ? isOpening(character) : character == ',') breakBefore(place + 1, "\n    ");
  });
  return lines += json.substr(begin);
}

std::map<std::string, std::string> jsonMembers(std::string_view object) {
  std::map<std::string, std::string> members;
  std::string name;
  std::size_t begin = 0;
  walk(object, [&](std::size_t place, int depth) {
    if (depth > 1) return;
    const char character = object[place];
    const bool isEnd = character == (depth == 0 ? '}' : ',');
    const bool isColon = depth == 1 && character == ':';
    if (depth == 1 && !isEnd && !isColon) return;
    const auto part = withoutSpaceAround(object.substr(begin, place - begin));
    if (isColon) name = Json::parse(part).get<std::string>();
    if (isEnd && !part.empty()) members[name] = part;
    begin = place + 1;
  });
  return members;
}

}  // namespace vorrin
