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

Reading<std::optional<DefaultsObject>> UserDefaults::object(const std::string& key) const {
  if (fake::storage().readFailure) return {{}, fake::storage().readFailure};
  const auto value = native_->values->find(key);
  if (value == native_->values->end()) return {};
  return {value->second, {}};
}

StorageFailure UserDefaults::set(
    std::span<const std::pair<std::string, DefaultsObject>> values) const {
  fake::storage().commits.emplace_back(values.begin(), values.end());
  if (fake::storage().writeFailure) return fake::storage().writeFailure;
  if (fake::storage().losesWrites) return {};
  for (const auto& [key, value] : values) native_->values->insert_or_assign(key, value);
  return {};
}

std::optional<std::string> UserDefaults::takeNotice() const {
  return std::exchange(fake::storage().notice, std::nullopt);
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
