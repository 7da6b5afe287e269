#include "tests/foundation/defaults_sandbox.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>

#include "tests/foundation/child_process.h"

namespace vorrin {

namespace {

std::filesystem::path newDirectory() {
  // In memory where there is such a place: the tests commit thousands of times.
  const std::string parent = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm/" : testing::TempDir();
  std::string name = parent + "vorrin-tests-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

}  // namespace

DefaultsSandbox::DefaultsSandbox() : root(newDirectory()) {
  for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "TMPDIR"}) {
    if (const char* value = ::getenv(variable)) formerVariables_[variable] = value;
  }
  std::filesystem::create_directory(home);
  std::filesystem::create_directory(temporary);
  ::setenv("HOME", home.c_str(), 1);
  ::setenv("TMPDIR", temporary.c_str(), 1);
  ::unsetenv("XDG_CONFIG_HOME");
}

DefaultsSandbox::~DefaultsSandbox() {
  for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "TMPDIR"}) ::unsetenv(variable);
  for (const auto& [variable, value] : formerVariables_) {
    ::setenv(variable.c_str(), value.c_str(), 1);
  }
  std::error_code error;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root, error)) {
    if (!entry.is_symlink() && entry.is_directory()) ::chmod(entry.path().c_str(), 0700);
  }
  std::filesystem::remove_all(root, error);
}

std::filesystem::path DefaultsSandbox::standardFile() const {
  return settings / "org.vorrin.Vorrin.json";
}

void DefaultsSandbox::giveToOrdinaryUser() const {
  const auto give = [](const std::filesystem::path& path) {
    if (::lchown(path.c_str(), ordinaryUser(), static_cast<gid_t>(-1)) != 0) std::abort();
  };
  give(root);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) give(entry.path());
}

StorageFailure store(const std::string& key, const DefaultsObject& value) {
  const std::pair<std::string, DefaultsObject> entry(key, value);
  return UserDefaults::standard().set({&entry, 1});
}

Reading<std::optional<DefaultsObject>> stored(const std::string& key) {
  return UserDefaults::standard().object(key);
}

std::vector<std::string> namesIn(const std::filesystem::path& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void fill(const std::filesystem::path& file, const std::string& content) {
  std::ofstream(file, std::ios::binary) << content;
}

FileDescriptor lockOn(const std::filesystem::path& folder) {
  FileDescriptor locked(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  EXPECT_EQ(::flock(locked.get(), LOCK_EX), 0);
  return locked;
}

}  // namespace vorrin
