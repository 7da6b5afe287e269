#include "platform/text_file.h"

#include <fcntl.h>
#include <pwd.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unicode/ustring.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin {

namespace {

bool isUtf8(std::string_view text) {
  if (!std::in_range<std::int32_t>(text.size())) return false;
  // Asked only for the length in UTF-16, ICU still checks every byte.
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<std::int32_t>(text.size()), &status);
  return status == U_BUFFER_OVERFLOW_ERROR || U_SUCCESS(status);
}

std::optional<std::string> readAll(const FileDescriptor& file) {
  std::string text;
  std::array<char, 4096> buffer{};
  for (;;) {
    const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
    if (count == 0) return text;
    if (count > 0) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return {};
    }
  }
}

bool writeAll(const FileDescriptor& file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(file.get(), text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

/// Where the symbolic links at `path` lead, so that a file which the user keeps elsewhere stays
/// there; nothing when they lead in a circle.
std::optional<std::filesystem::path> linkTarget(std::filesystem::path path) {
  constexpr int mostLinks = 40;
  for (int i = 0; i < mostLinks; ++i) {
    std::error_code error;
    const auto target = std::filesystem::read_symlink(path, error);
    if (error) return path;
    path = path.parent_path() / target;
  }
  return {};
}

bool isFileAt(const FileDescriptor& file, const std::filesystem::path& path) {
  struct stat opened {};
  struct stat found {};
  return ::fstat(file.get(), &opened) == 0 && ::lstat(path.c_str(), &found) == 0 &&
         opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
}

/// Whether nobody but this process's user has made the file or can reach it under another name.
bool isOnlyHere(const FileDescriptor& file) {
  struct stat status {};
  return ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
         status.st_uid == ::geteuid();
}

/// The file that is to take another one's place, empty. It always has the same name, so that what
/// a killed process leaves behind is used up by the next one; a lock tells such a file from one
/// that is being written. Not open when another process is at it.
FileDescriptor openSuccessor(const std::filesystem::path& path) {
  FileDescriptor file(
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666));
  if (!file.isOpen() || !isOnlyHere(file)) return {};
  // Where the file system has no locks two processes may meet, but only by chance.
  if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return {};
  // The other one may have finished in between: then this is its finished file.
  if (!isFileAt(file, path) || ::ftruncate(file.get(), 0) != 0) return {};
  return file;
}

}  // namespace

std::filesystem::path homeDirectory() {
  const char* const home = ::getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  std::array<char, 16384> buffer{};
  passwd entry{};
  passwd* found = nullptr;
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found != nullptr ? found->pw_dir : "/";
}

std::optional<std::string> readTextFile(const std::filesystem::path& path) {
  // A pipe at the path must not hold the caller up.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  auto text = readAll(file);
  if (text && !isUtf8(*text)) return {};
  return text;
}

bool writeTextFileAtomically(const std::filesystem::path& path, std::string_view text) {
  const auto target = linkTarget(path);
  if (!target) return false;
  struct stat old {};
  const bool replaces = ::lstat(target->c_str(), &old) == 0;
  if (replaces && !S_ISREG(old.st_mode)) return false;

  const auto successor =
      target->parent_path() / ("." + target->filename().string() + ".vorrin-new");
  const FileDescriptor file = openSuccessor(successor);
  if (!file.isOpen()) return false;
  // Not flushed to the disk: that can hold up the main thread for long, and a text lost with the
  // power is written again when it is next compared.
  const bool written = (!replaces || ::fchmod(file.get(), old.st_mode & 07777) == 0) &&
                       writeAll(file, text) && ::rename(successor.c_str(), target->c_str()) == 0;
  if (!written) ::unlink(successor.c_str());
  return written;
}

}  // namespace vorrin
