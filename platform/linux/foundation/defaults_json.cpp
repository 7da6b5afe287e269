#include "platform/linux/foundation/defaults_json.h"

#include <QByteArray>
#include <utility>

#include "platform/portable/json_text.h"

namespace vorrin {

using Json = nlohmann::json;

namespace {

constexpr auto jsonMember = "json";
constexpr auto base64Member = "base64";

std::string quoted(const std::string& text) {
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string objectOf(const char* member, const std::string& json) {
  return "{\"" + std::string(member) + "\": " + json + "}";
}

struct ToJson {
  std::string operator()(const Data& data) const {
    if (isJson(data.bytes) && compactJson(data.bytes) == data.bytes) {
      return objectOf(jsonMember, jsonInLines(data.bytes));
    }
    return objectOf(base64Member,
                    quoted(QByteArray::fromStdString(data.bytes).toBase64().toStdString()));
  }
  std::string operator()(const std::string& text) const { return quoted(text); }
  template <class Value>
  std::string operator()(const Value& value) const {
    return Json(value).dump();
  }
};

std::optional<DefaultsObject> dataOf(const std::string& object) {
  const auto members = jsonMembers(object);
  if (members.size() != 1) return {};
  const auto& [name, value] = *members.begin();
  if (name == jsonMember) return Data{compactJson(value)};
  if (name != base64Member || value.front() != '"') return {};
  const auto text = QByteArray::fromStdString(Json::parse(value).get<std::string>());
  const auto bytes = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
  if (!bytes) return {};
  return Data{bytes.decoded.toStdString()};
}

std::optional<DefaultsObject> objectIn(const std::string& text) {
  if (text.front() == '{') return dataOf(text);
  if (text.front() == '[') return {};
  const Json json = Json::parse(text);
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::number_integer:
      return json.get<std::int64_t>();
    case Json::value_t::number_unsigned:
      if (!std::in_range<std::int64_t>(json.get<std::uint64_t>())) return {};
      return json.get<std::int64_t>();
    case Json::value_t::string:
      return json.get<std::string>();
    default:
      return {};
  }
}

}  // namespace

StoredValue storedValue(const DefaultsObject& object) {
  return {std::visit(ToJson{}, object), object};
}

std::string textOf(const Domain& domain) {
  std::string text = "{";
  for (const auto& [key, value] : domain) {
    text += (text.size() == 1 ? "\n  " : ",\n  ") + quoted(key) + ": " + value.json;
  }
  return text + "\n}\n";
}

std::optional<Domain> parsedDomain(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\uFEFF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == text.npos) return Domain();
  if (text[first] != '{' || !isJson(text)) return {};
  Domain domain;
  for (auto& [key, json] : jsonMembers(text)) {
    auto object = objectIn(json);
    domain[key] = {std::move(json), std::move(object)};
  }
  return domain;
}

}  // namespace vorrin
