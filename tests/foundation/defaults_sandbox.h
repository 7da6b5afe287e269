#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"
#include "platform/user_defaults.h"

namespace vorrin {

/// A home, a settings directory and a directory for temporary files of the test's own, which the
/// environment leads to.
class DefaultsSandbox : public testing::Test {
 protected:
  DefaultsSandbox();
  ~DefaultsSandbox() override;

  /// The file of the user's own domain.
  [[nodiscard]] std::filesystem::path standardFile() const;

  /// Gives everything in the sandbox to the user that becomeOrdinaryUser makes of the caller.
  void giveToOrdinaryUser() const;

  const std::filesystem::path root;
  const std::filesystem::path home = root / "home";
  const std::filesystem::path settings = home / ".config" / "vorrin";
  const std::filesystem::path temporary = root / "temporary";

 private:
  std::map<std::string, std::string> formerVariables_;
};

/// Stores one value in the user's own domain, and tells why not.
StorageFailure store(const std::string& key, const DefaultsObject& value);

/// The value under `key` in the user's own domain, read afresh.
Reading<std::optional<DefaultsObject>> stored(const std::string& key);

/// The names of what is in `directory`, in order; none when there is no such directory.
std::vector<std::string> namesIn(const std::filesystem::path& directory);

std::string contentOf(const std::filesystem::path& file);
void fill(const std::filesystem::path& file, const std::string& content);

/// The lock on the settings in `folder`, as another program holds it.
FileDescriptor lockOn(const std::filesystem::path& folder);

}  // namespace vorrin
