#include "platform/linux/foundation/domain_location.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <set>
#include <string_view>

#include "platform/text_file.h"

namespace vorrin {

namespace {

using std::filesystem::path;

std::set<path>& directoriesMadeHere() {
  static std::set<path> directories;
  return directories;
}

bool makeDirectory(const path& directory) {
  if (::mkdir(directory.c_str(), 0700) != 0) return errno == EEXIST;
  directoriesMadeHere().insert(directory);
  return true;
}

path absolutePathIn(const char* variable, const path& otherwise) {
  const char* const value = ::getenv(variable);
  return value != nullptr && *value == '/' ? path(value) : otherwise;
}

/// Whether nobody but this user and the administrator can replace the entries of `directory` that
/// belong to this user.
bool keepsEntriesToTheirOwners(const path& directory) {
  struct stat status {};
  if (::stat(directory.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return false;
  const bool trustedOwner = status.st_uid == ::geteuid() || status.st_uid == 0;
  const bool writableByOthers = (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  return trustedOwner && (!writableByOthers || (status.st_mode & S_ISVTX) != 0);
}

/// Whether `directory` itself, not what a link leads to, is this user's and closed to all others.
bool isPrivate(const path& directory) {
  struct stat status {};
  return ::lstat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && (status.st_mode & 077) == 0;
}

/// What temporaryDirectories may give, in order of preference, whether or not it exists.
std::vector<path> temporaryCandidates() {
  const auto name = "vorrin-" + std::to_string(::geteuid());
  std::vector<path> candidates;
  for (const path& parent : {absolutePathIn("TMPDIR", "/tmp"), path("/tmp")}) {
    if (keepsEntriesToTheirOwners(parent)) candidates.push_back(parent / name);
  }
  return candidates;
}

}  // namespace

bool isDomainName(const std::string& name) {
  constexpr std::size_t longestName = 160;
  constexpr std::string_view characters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._";
  return !name.empty() && name.size() <= longestName && name.front() != '.' &&
         name.find_first_not_of(characters) == std::string::npos;
}

path domainFile(const path& directory, const std::string& name) {
  return directory / (name + ".sqlite3");
}

path settingsDirectory() {
  return absolutePathIn("XDG_CONFIG_HOME", homeDirectory() / ".config") / "vorrin";
}

std::vector<path> temporaryDirectories() {
  auto directories = temporaryCandidates();
  std::erase_if(directories, [](const path& directory) { return !isPrivate(directory); });
  return directories;
}

std::optional<path> makeTemporaryDirectory() {
  for (const path& directory : temporaryCandidates()) {
    if (makeDirectory(directory) && isPrivate(directory)) return directory;
  }
  return {};
}

bool makeDirectories(const path& directory) {
  if (makeDirectory(directory)) return true;
  return errno == ENOENT && makeDirectories(directory.parent_path()) && makeDirectory(directory);
}

void removeEmptyDirectories(path directory) {
  do {
    if (::rmdir(directory.c_str()) != 0) return;
    directoriesMadeHere().erase(directory);
    directory = directory.parent_path();
  } while (directoriesMadeHere().contains(directory));
}

}  // namespace vorrin
