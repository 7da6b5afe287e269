#include "platform/linux/foundation/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

namespace vorrin {

using namespace std::chrono_literals;

namespace {

bool makeFolder(const std::filesystem::path& folder) {
  if (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) return true;
  return errno == ENOENT && folder.has_relative_path() && makeFolder(folder.parent_path()) &&
         ::mkdir(folder.c_str(), 0700) == 0;
}

}  // namespace

Reading<FileDescriptor> lockFolder(const std::filesystem::path& folder) {
  const auto deadline = std::chrono::steady_clock::now() + 500ms;
  FileDescriptor opened(
      makeFolder(folder) ? ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1);
  if (!opened.isOpen()) return {{}, std::generic_category().message(errno)};
  // Some file systems have no locks: there two programs may meet, but only by chance.
  while (::flock(opened.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    if (std::chrono::steady_clock::now() >= deadline) {
      return {{}, "another program is using the settings"};
    }
    std::this_thread::sleep_for(2ms);
  }
  return {std::move(opened), {}};
}

}  // namespace vorrin
