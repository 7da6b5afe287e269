#include "own_mounts.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <fstream>
#include <ranges>

namespace vorrin::faults {

namespace {

bool mapToOneself(uid_t user, gid_t group) {
  std::ofstream("/proc/self/setgroups") << "deny";
  const bool users =
      static_cast<bool>(std::ofstream("/proc/self/uid_map")
                        << std::to_string(user) + ' ' + std::to_string(user) + " 1" << std::flush);
  const bool groups = static_cast<bool>(
      std::ofstream("/proc/self/gid_map")
      << std::to_string(group) + ' ' + std::to_string(group) + " 1" << std::flush);
  return users && groups;
}

bool leaveCommonMounts() {
  const uid_t user = ::getuid();
  const gid_t group = ::getgid();
  return ::unshare(CLONE_NEWNS) == 0 ||
         (::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && mapToOneself(user, group));
}

// Once for the process: what it has mounted itself it could not leave behind.
bool hasOwnMounts() {
  static const bool has = leaveCommonMounts();
  return has;
}

/// Lets nobody else see what is mounted below the mount that holds `directory`. That need not be
/// the root: a changed root directory is no mount.
bool hideMountsIn(std::filesystem::path directory) {
  while (::mount("none", directory.c_str(), nullptr, MS_PRIVATE, nullptr) != 0) {
    if (directory == directory.root_path()) return false;
    directory = directory.parent_path();
  }
  return true;
}

}  // namespace

OwnMounts::~OwnMounts() {
  for (const auto& directory : std::views::reverse(mounted_)) {
    ::umount2(directory.c_str(), MNT_DETACH);
  }
}

bool OwnMounts::addSmallDisk(const std::filesystem::path& directory, std::size_t bytes) {
  return mount("tmpfs", directory, "tmpfs", 0, "mode=0700,size=" + std::to_string(bytes));
}

bool OwnMounts::makeReadOnly(const std::filesystem::path& directory) {
  return mount(directory.c_str(), directory, nullptr, MS_BIND, {}) &&
         ::mount(nullptr, directory.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) ==
             0;
}

bool OwnMounts::mount(const char* source, const std::filesystem::path& directory, const char* type,
                      unsigned long flags, const std::string& options) {
  if (!hasOwnMounts() || !hideMountsIn(directory) ||
      ::mount(source, directory.c_str(), type, flags,
              options.empty() ? nullptr : options.c_str()) != 0) {
    return false;
  }
  mounted_.push_back(directory);
  return true;
}

}  // namespace vorrin::faults
