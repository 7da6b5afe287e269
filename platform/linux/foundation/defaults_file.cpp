#include "platform/linux/foundation/defaults_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <cstdio>
#include <set>
#include <string_view>
#include <system_error>

#include "platform/linux/foundation/file_descriptor.h"
#include "platform/linux/foundation/folder_lock.h"

namespace vorrin {

namespace {

using std::filesystem::path;
/// Some eighty thousand presets. What is larger is none of ours, and would hold up the start.
constexpr off_t largestFile = 8 << 20;

/// The file itself, where links lead to it: a user may keep it elsewhere.
path resolved(const path& file) {
  std::error_code error;
  auto target = std::filesystem::canonical(file, error);
  return error ? file : target;
}

std::string systemMessage() {
  return std::generic_category().message(errno);
}

bool writeAll(const FileDescriptor& file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(file.get(), text.data(), text.size());
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

/// Under the lock, so what a killed process left of a successor is used up by the next.
StorageFailure replace(const path& file, std::string_view text, const FileDescriptor& folder) {
  if (text.size() > largestFile) return "too much to store";
  path name = file;
  name += ".new";
  const FileDescriptor successor(
      ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600));
  const bool isReplaced = successor.isOpen() && writeAll(successor, text) &&
                          ::fsync(successor.get()) == 0 &&
                          ::rename(name.c_str(), file.c_str()) == 0;
  if (!isReplaced) {
    std::string reason = systemMessage();
    ::unlink(name.c_str());
    return reason;
  }
  // The new file is on the disk; this puts its name there, too.
  ::fsync(folder.get());
  return {};
}

path unusedName(const path& file) {
  path name = file;
  name += ".damaged";
  for (int number = 2; std::filesystem::exists(std::filesystem::symlink_status(name)); ++number) {
    name = file;
    name += ".damaged-" + std::to_string(number);
  }
  return name;
}

void tell(const std::string& message) {
  std::fprintf(stderr, "vorrin: %s\n", message.c_str());
}

}  // namespace

Reading<std::optional<DefaultsObject>> DefaultsFile::object(const std::string& key) {
  if (auto failure = read()) return {{}, told("read", std::move(failure))};
  const auto entry = domain_.find(key);
  return {entry == domain_.end() ? std::nullopt : entry->second.object, {}};
}

StorageFailure DefaultsFile::set(std::span<const std::pair<std::string, DefaultsObject>> values) {
  return told("stored", merge(values));
}

StorageFailure DefaultsFile::read() {
  const path file = resolved(path_);
  const auto [isUnderstood, failure] = load(file);
  if (failure || isUnderstood) return failure;
  const auto lock = lockFolder(file.parent_path());
  return lock.failure ? lock.failure : loadOrSetAside(file);
}

StorageFailure DefaultsFile::loadOrSetAside(const path& file) {
  const auto [isUnderstood, failure] = load(file);
  return failure || isUnderstood ? failure : setAside(file);
}

Reading<bool> DefaultsFile::load(const path& file) {
  // A pipe must not hold the caller up.
  const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  const bool isThere = opened.isOpen() || (errno != ENOENT && errno != ENOTDIR);
  struct stat status {};
  if (isThere && (!opened.isOpen() || ::fstat(opened.get(), &status) != 0)) {
    return {{}, systemMessage()};
  }
  if (isThere && !S_ISREG(status.st_mode)) return {{}, "not a regular file"};
  const bool isTooLarge = status.st_size > largestFile;
  QFile stream;
  if (isThere && !isTooLarge && !stream.open(opened.get(), QIODevice::ReadOnly)) {
    return {{}, systemMessage()};
  }
  std::string text = stream.isOpen() ? stream.readAll().toStdString() : "";
  if (stream.error() != QFile::NoError) return {{}, stream.errorString().toStdString()};
  if (!isTooLarge && text == text_) return {true, {}};
  text_.clear();
  domain_.clear();
  auto domain = isTooLarge ? std::nullopt : parsedDomain(text);
  if (!domain) return {false, {}};
  domain_ = *std::move(domain);
  text_ = std::move(text);
  return {true, {}};
}

StorageFailure DefaultsFile::merge(std::span<const std::pair<std::string, DefaultsObject>> values) {
  const path file = resolved(path_);
  const auto lock = lockFolder(file.parent_path());
  if (lock.failure) return lock.failure;
  if (auto failure = loadOrSetAside(file)) return failure;
  Domain changed = domain_;
  for (const auto& [key, value] : values) changed[key] = storedValue(value);
  if (changed == domain_) return {};
  std::string text = textOf(changed);
  if (auto failure = replace(file, text, lock.value)) return failure;
  domain_ = std::move(changed);
  text_ = std::move(text);
  return {};
}

StorageFailure DefaultsFile::setAside(const path& file) {
  const path name = unusedName(file);
  if (::rename(file.c_str(), name.c_str()) != 0) {
    return "it cannot be understood, and not be renamed: " + systemMessage();
  }
  const std::string what = "The stored settings could not be understood. They were kept as “";
  tell(what + name.string() + "”.");
  notice_ = what + name.filename().string() + "” in their folder.";
  return {};
}

StorageFailure DefaultsFile::told(const char* what, StorageFailure failure) const {
  if (!failure) return failure;
  static std::set<std::string> alreadyTold;
  const std::string message =
      "The settings in “" + path_.string() + "” could not be " + what + ": " + *failure;
  if (alreadyTold.insert(message).second) tell(message);
  return failure;
}

}  // namespace vorrin
