#include "platform/user_defaults.h"

#include <QTemporaryDir>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/linux/foundation/defaults_file.h"
#include "platform/text_file.h"

namespace vorrin {

namespace {

using std::filesystem::path;

path settingsFolder() {
  const QByteArray folder = qgetenv("XDG_CONFIG_HOME");
  return (folder.startsWith('/') ? path(folder.toStdString()) : homeDirectory() / ".config") /
         "vorrin";
}

/// The file of a suite of this process, in a folder that is removed at its end; nothing when there
/// can be none.
std::optional<path> suiteFile(const std::string& name) {
  static const QTemporaryDir folder;
  constexpr std::string_view characters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._";
  const bool isName =
      !name.empty() && name.front() != '.' && name.find_first_not_of(characters) == name.npos;
  if (!isName || !folder.isValid()) return {};
  return path(folder.path().toStdString()) / (name + ".json");
}

}  // namespace

struct UserDefaults::Native : DefaultsFile {
  using DefaultsFile::DefaultsFile;
};

UserDefaults::UserDefaults(std::shared_ptr<Native> native) : native_(std::move(native)) {}

UserDefaults UserDefaults::standard() {
  return UserDefaults(std::make_shared<Native>(settingsFolder() / "org.vorrin.Vorrin.json"));
}

std::optional<UserDefaults> UserDefaults::suite(const std::string& name) {
  const auto file = suiteFile(name);
  return file ? std::optional(UserDefaults(std::make_shared<Native>(*file))) : std::nullopt;
}

void UserDefaults::removePersistentDomain(const std::string& name) {
  std::error_code error;
  if (const auto file = suiteFile(name)) std::filesystem::remove(*file, error);
}

Reading<std::optional<DefaultsObject>> UserDefaults::object(const std::string& key) const {
  return native_->object(key);
}

StorageFailure UserDefaults::set(
    std::span<const std::pair<std::string, DefaultsObject>> values) const {
  return native_->set(values);
}

std::optional<std::string> UserDefaults::takeNotice() const {
  return native_->takeNotice();
}

}  // namespace vorrin
