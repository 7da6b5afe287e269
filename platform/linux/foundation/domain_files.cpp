#include "platform/linux/foundation/domain_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/linux/foundation/domain_location.h"
#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin {

namespace {

using std::filesystem::path;

/// What SQLite may keep beside a database, by what it appends to the name.
constexpr std::array<const char*, 3> companions = {"-journal", "-wal", "-shm"};

StorageResult systemFailure() {
  const auto status = errno == EWOULDBLOCK ? StorageStatus::busy : StorageStatus::unavailable;
  return {status, std::generic_category().message(errno)};
}

/// The directory, open and, where its file system can do that, locked. Closing it unlocks it.
/// Not open when it cannot be opened, or `patience` ended; errno says why.
FileDescriptor lockDirectory(const path& directory, LockPatience& patience) {
  FileDescriptor opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  while (opened.isOpen() && ::flock(opened.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) break;
    if (!patience.waitOn()) {
      errno = EWOULDBLOCK;
      return {};
    }
  }
  return opened;
}

bool isThere(const path& file) {
  struct stat status {};
  return ::lstat(file.c_str(), &status) == 0;
}

std::string timestamp() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  std::array<char, 16> text{};
  std::strftime(text.data(), text.size(), "%Y%m%d-%H%M%S", &local);
  return text.data();
}

path withSuffix(path file, const std::string& suffix) {
  file += suffix;
  return file;
}

/// `file` with `suffix`, and a number when there is such a file already.
path unusedName(const path& file, const std::string& suffix) {
  path name = withSuffix(file, suffix);
  for (int number = 2; isThere(name); ++number) {
    name = withSuffix(file, suffix + "-" + std::to_string(number));
  }
  return name;
}

/// Whether the file called `name` was made from the domain file called `domain`.
bool belongsTo(const std::string& name, const std::string& domain) {
  if (!name.starts_with(domain)) return false;
  const auto rest = std::string_view(name).substr(domain.size());
  for (const std::string_view companion : companions) {
    if (rest == companion) return true;
  }
  // A domain of its own ends in ".sqlite3", whatever its name.
  return rest.empty() || ((rest.starts_with(".damaged-") || rest.starts_with(".newer-")) &&
                          !rest.ends_with(".sqlite3"));
}

}  // namespace

StorageResult makeDomainFile(const path& file, LockPatience& patience) {
  // Another process may remove the directory, empty as it is, before the file is in it.
  constexpr int mostAttempts = 100;
  for (int attempt = 0; attempt < mostAttempts; ++attempt) {
    if (!makeDirectories(file.parent_path())) return systemFailure();
    const auto directory = lockDirectory(file.parent_path(), patience);
    if (directory.isOpen()) {
      const FileDescriptor made(::openat(directory.get(), file.filename().c_str(),
                                         O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
      if (made.isOpen() || errno == EEXIST) return {};
    }
    if (errno != ENOENT) return systemFailure();
  }
  return systemFailure();
}

StorageResult setDomainFileAside(const path& file, const std::string& reason,
                                 const std::function<bool()>& replaced, LockPatience& patience,
                                 path& newName) {
  const auto directory = lockDirectory(file.parent_path(), patience);
  if (!directory.isOpen()) return systemFailure();
  if (replaced()) return {};
  const path name = unusedName(file, "." + reason + "-" + timestamp());
  // The journal goes first: left behind, it would be played back into the next file.
  for (const char* companion : companions) {
    const path beside = withSuffix(file, companion);
    if (isThere(beside) && ::rename(beside.c_str(), withSuffix(name, companion).c_str()) != 0) {
      return systemFailure();
    }
  }
  if (::rename(file.c_str(), name.c_str()) != 0) return systemFailure();
  newName = name;
  return {};
}

void removeDomainFiles(const path& file) {
  LockPatience patience(file);
  patience.beginOperation();
  const auto directory = lockDirectory(file.parent_path(), patience);
  // The database before its journal, so that no reader in between finds one without the other: a
  // journal without a database is ignored.
  ::unlink(file.c_str());
  std::error_code error;
  std::vector<path> leftovers;
  for (const auto& entry : std::filesystem::directory_iterator(file.parent_path(), error)) {
    if (belongsTo(entry.path().filename(), file.filename())) leftovers.push_back(entry.path());
  }
  for (const auto& leftover : leftovers) ::unlink(leftover.c_str());
  removeEmptyDirectories(file.parent_path());
}

}  // namespace vorrin
