#include "platform/linux/foundation/defaults_json.h"

#include <QByteArray>
#include <utility>

#include "platform/portable/json_text.h"

namespace vorrin {

using Json = nlohmann::json;

namespace {

constexpr auto jsonMember = "json";
constexpr auto base64Member = "base64";

struct ToJson {
  Json operator()(const Data& data) const {
    const auto json = parsedJson(data.bytes);
    if (json && json->dump() == data.bytes) return {{jsonMember, *json}};
    return {{base64Member, QByteArray::fromStdString(data.bytes).toBase64().toStdString()}};
  }
  template <class Value>
  Json operator()(const Value& value) const {
    return value;
  }
};

std::optional<DefaultsObject> dataOf(const Json& json) {
  if (!json.is_object() || json.size() != 1) return {};
  const auto member = json.begin();
  if (member.key() == jsonMember) return Data{member->dump()};
  if (member.key() != base64Member || !member->is_string()) return {};
  const auto text = QByteArray::fromStdString(member->get<std::string>());
  const auto bytes = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
  if (!bytes) return {};
  return Data{bytes.decoded.toStdString()};
}

}  // namespace

Json jsonOf(const DefaultsObject& object) {
  return std::visit(ToJson{}, object);
}

std::optional<DefaultsObject> defaultsObjectOf(const Json& json) {
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
      return dataOf(json);
  }
}

std::optional<Json> parsedDomain(std::string_view text) {
  if (text.find_first_not_of(" \t\r\n") == text.npos) return Json::object();
  auto domain = parsedJson(text);
  if (!domain || !domain->is_object()) return {};
  return domain;
}

}  // namespace vorrin
