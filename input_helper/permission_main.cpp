// vorrin-input-permission TERM: sets how long the permission to start the input helper lasts for
// the user who asks through pkexec. Runs as root; the caller was checked by polkit.

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "input_helper/permission_rule.h"
#include "input_helper/protocol/file_descriptor.h"

namespace vorrin::input_helper {
namespace {

using helper_protocol::FileDescriptor;

/// Read after those of polkit's own packages and before the administrator's of higher number.
constexpr const char* folder = "/etc/polkit-1/rules.d";

/// pkexec clears the environment and tells the caller in one variable. Who could forge it is root
/// already.
std::optional<uid_t> caller() {
  const char* text = std::getenv("PKEXEC_UID");
  if (text == nullptr) return std::nullopt;
  uid_t user = 0;
  const auto* const end = text + std::strlen(text);
  const auto [stop, failure] = std::from_chars(text, end, user);
  if (failure != std::errc() || stop != end) return std::nullopt;
  return user;
}

bool writeWhole(const std::string& path, const std::string& text) {
  const FileDescriptor file(
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0644));
  if (!file.isOpen()) return false;
  const auto size = static_cast<ssize_t>(text.size());
  return ::write(file.number(), text.data(), text.size()) == size &&
         ::fchmod(file.number(), 0644) == 0 && ::fsync(file.number()) == 0;
}

/// polkit follows the folder and reads a file only under a name that ends in ".rules".
bool replaceRule(uid_t user, const std::string& rule) {
  const auto path = std::string(folder) + "/60-vorrin-" + std::to_string(user) + ".rules";
  if (rule.empty()) return ::unlink(path.c_str()) == 0 || errno == ENOENT;
  const auto fresh = path + ".new";
  ::unlink(fresh.c_str());
  if (writeWhole(fresh, rule) && ::rename(fresh.c_str(), path.c_str()) == 0) return true;
  ::unlink(fresh.c_str());
  return false;
}

int run(int count, char** arguments) {
  const auto term = count == 2 ? permissionTerm(arguments[1]) : std::nullopt;
  const auto user = caller();
  const passwd* entry = user ? ::getpwuid(*user) : nullptr;
  if (!term || entry == nullptr) {
    std::fputs("vorrin-input-permission: it is started by Vorrin only, through pkexec\n", stderr);
    return 2;
  }
  const auto rule = permissionRule(*term, entry->pw_name);
  if (rule && replaceRule(*user, *rule)) return 0;
  std::perror("vorrin-input-permission: the rule cannot be written");
  return 1;
}

}  // namespace
}  // namespace vorrin::input_helper

int main(int count, char** arguments) {
  return vorrin::input_helper::run(count, arguments);
}
