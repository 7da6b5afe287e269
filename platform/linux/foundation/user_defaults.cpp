#include "platform/user_defaults.h"

#include <filesystem>
#include <system_error>

#include "platform/linux/foundation/defaults_domain.h"
#include "platform/linux/foundation/domain_files.h"
#include "platform/linux/foundation/domain_location.h"

namespace vorrin {

namespace {

constexpr const char* standardName = "org.vorrin.Vorrin";

bool isSuiteName(const std::string& name) {
  return isDomainName(name) && name != standardName;
}

}  // namespace

struct UserDefaults::Native : DefaultsDomain {
  using DefaultsDomain::DefaultsDomain;
};

UserDefaults::UserDefaults(std::shared_ptr<Native> native) : native_(std::move(native)) {}

UserDefaults UserDefaults::standard() {
  return UserDefaults(std::make_shared<Native>(domainFile(settingsDirectory(), standardName)));
}

std::optional<UserDefaults> UserDefaults::suite(const std::string& name) {
  if (!isSuiteName(name)) return {};
  for (const auto& directory : temporaryDirectories()) {
    // Where it was made it stays, also when the settings directory can be written again.
    const auto file = domainFile(directory, name);
    std::error_code error;
    if (std::filesystem::exists(file, error)) return UserDefaults(std::make_shared<Native>(file));
  }
  const auto settings = std::make_shared<Native>(domainFile(settingsDirectory(), name));
  const auto result = settings->make();
  // A suite that another process has locked exists all the same.
  if (result.isDone() || result.status == StorageStatus::busy) return UserDefaults(settings);

  if (const auto directory = makeTemporaryDirectory()) {
    const auto substitute = std::make_shared<Native>(domainFile(*directory, name));
    if (substitute->make().isDone()) return UserDefaults(substitute);
  }
  settings->tellFailure(result);
  return {};
}

void UserDefaults::removePersistentDomain(const std::string& name) {
  if (!isSuiteName(name)) return;
  removeDomainFiles(domainFile(settingsDirectory(), name));
  for (const auto& directory : temporaryDirectories()) {
    removeDomainFiles(domainFile(directory, name));
  }
}

std::optional<DefaultsObject> UserDefaults::object(const std::string& key) const {
  return native_->object(key);
}

void UserDefaults::set(std::span<const std::pair<std::string, DefaultsObject>> values) const {
  native_->set(values);
}

}  // namespace vorrin
