#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "platform/linux/foundation/defaults_json.h"
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
  /// Has `domain_` be what is stored.
  StorageFailure read();
  /// Renames what cannot be understood. Under the lock.
  StorageFailure loadOrSetAside(const std::filesystem::path& file);
  /// Reads the file; without one the domain is empty. False when it cannot be understood.
  Reading<bool> load(const std::filesystem::path& file);
  StorageFailure merge(std::span<const std::pair<std::string, DefaultsObject>> values);
  StorageFailure setAside(const std::filesystem::path& file);
  StorageFailure told(const char* what, StorageFailure failure) const;

  std::filesystem::path path_;
  Domain domain_;
  std::string text_;  ///< what `domain_` was read from
  std::optional<std::string> notice_;
};

}  // namespace vorrin
