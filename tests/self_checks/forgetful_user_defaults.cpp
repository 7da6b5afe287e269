#include "platform/user_defaults.h"

namespace vorrin {

// A storage that takes every write and keeps none: what a self-check must notice.

struct UserDefaults::Native {};

UserDefaults::UserDefaults(std::shared_ptr<Native> native) : native_(std::move(native)) {}

UserDefaults UserDefaults::standard() {
  return UserDefaults(std::make_shared<Native>());
}

std::optional<UserDefaults> UserDefaults::suite(const std::string&) {
  return standard();
}

void UserDefaults::removePersistentDomain(const std::string&) {}

Reading<std::optional<DefaultsObject>> UserDefaults::object(const std::string&) const {
  return {};
}

StorageFailure UserDefaults::set(std::span<const std::pair<std::string, DefaultsObject>>) const {
  return {};
}

std::optional<std::string> UserDefaults::takeNotice() const {
  return {};
}

}  // namespace vorrin
