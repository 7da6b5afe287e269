#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "platform/user_defaults.h"

namespace vorrin {

/// The file of one domain, a JSON text for this user alone. It is replaced as a whole, under a
/// lock, so reading needs none. One that cannot be understood is renamed, and a new one begun.
class DefaultsFile {
 public:
  /// Touches nothing yet.
  explicit DefaultsFile(std::filesystem::path path) : path_(std::move(path)) {}

  Reading<std::optional<DefaultsObject>> object(const std::string& key);
  [[nodiscard]] StorageFailure set(std::span<const std::pair<std::string, DefaultsObject>> values);

  /// See UserDefaults::takeNotice.
  std::optional<std::string> takeNotice() { return std::exchange(notice_, std::nullopt); }

 private:
  using Domain = nlohmann::json;

  Reading<Domain> read();
  /// Renames what cannot be understood. Under the lock.
  Reading<Domain> readOrSetAside(const std::filesystem::path& file);
  StorageFailure merge(std::span<const std::pair<std::string, DefaultsObject>> values);
  StorageFailure setAside(const std::filesystem::path& file);
  StorageFailure told(const char* what, StorageFailure failure) const;

  std::filesystem::path path_;
  std::optional<std::string> notice_;
};

}  // namespace vorrin
