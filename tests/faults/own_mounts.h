#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vorrin::faults {

/// File systems that only this process and those it starts from now on see, mounted over
/// directories until this goes. That takes the administrator's rights, or a kernel that gives users
/// name spaces of their own; where neither is to be had, there are none.
class OwnMounts {
 public:
  OwnMounts() = default;
  ~OwnMounts();
  OwnMounts(const OwnMounts&) = delete;
  OwnMounts& operator=(const OwnMounts&) = delete;

  /// A disk in memory with room for so many bytes.
  bool addSmallDisk(const std::filesystem::path& directory, std::size_t bytes);

  /// The directory with all that is in it, for reading only; also for the administrator, to whom
  /// permissions mean nothing.
  bool makeReadOnly(const std::filesystem::path& directory);

 private:
  bool mount(const char* source, const std::filesystem::path& directory, const char* type,
             unsigned long flags, const std::string& options);

  std::vector<std::filesystem::path> mounted_;
};

}  // namespace vorrin::faults
