#include "platform/fake/defaults/fake_defaults.h"

#include <map>

namespace vorrin {
namespace {

using Domain = std::map<std::string, DefaultsObject>;

/// By name; the standard domain has none.
std::map<std::string, std::shared_ptr<Domain>>& domains() {
  static std::map<std::string, std::shared_ptr<Domain>> instance;
  return instance;
}

std::shared_ptr<Domain> domain(const std::string& name) {
  auto& found = domains()[name];
  if (!found) found = std::make_shared<Domain>();
  return found;
}

}  // namespace

struct UserDefaults::Native {
  std::shared_ptr<Domain> values;
};

UserDefaults::UserDefaults(std::shared_ptr<Native> native) : native_(std::move(native)) {}

UserDefaults UserDefaults::standard() {
  return UserDefaults(std::make_shared<Native>(domain("")));
}

std::optional<UserDefaults> UserDefaults::suite(const std::string& name) {
  if (fake::storage().refusesSuites) return std::nullopt;
  return UserDefaults(std::make_shared<Native>(domain(name)));
}

void UserDefaults::removePersistentDomain(const std::string& name) {
  domain(name)->clear();
  domains().erase(name);
}

std::optional<DefaultsObject> UserDefaults::object(const std::string& key) const {
  const auto value = native_->values->find(key);
  if (value == native_->values->end()) return std::nullopt;
  return value->second;
}

void UserDefaults::set(std::span<const std::pair<std::string, DefaultsObject>> values) const {
  fake::storage().commits.emplace_back(values.begin(), values.end());
  if (fake::storage().losesWrites) return;
  for (const auto& [key, value] : values) native_->values->insert_or_assign(key, value);
}

namespace fake {

Storage& storage() {
  static Storage instance;
  return instance;
}

void resetStorage() {
  domains().clear();
  storage() = {};
}

}  // namespace fake
}  // namespace vorrin
