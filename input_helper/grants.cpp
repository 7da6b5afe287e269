#include "input_helper/grants.h"

#include <pwd.h>

#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

namespace vorrin::input_helper {
namespace {

bool isOfSomebody(const std::filesystem::path& file) {
  std::istringstream parts(file.filename().string());
  std::string decision;
  uid_t user = 0;
  std::string name;
  if (!(parts >> decision >> user >> name)) return false;
  const passwd* entry = ::getpwuid(user);
  return entry != nullptr && name == entry->pw_name;
}

std::string beginning(Decision decision, uid_t user) {
  return (decision == Decision::allow ? "allow " : "refuse ") + std::to_string(user) + " ";
}

}  // namespace

Grants::Grants(std::filesystem::path folder) : folder_(std::move(folder)) {
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(folder_, failure)) {
    if (!isOfSomebody(entry.path())) std::filesystem::remove(entry.path(), failure);
  }
}

std::filesystem::path Grants::file(Decision decision, uid_t user, const std::string& name) const {
  return folder_ / (beginning(decision, user) + name);
}

Decision Grants::of(uid_t user, const std::string& name) const {
  std::error_code failure;
  for (const auto decision : {Decision::refuse, Decision::allow}) {
    if (std::filesystem::exists(file(decision, user, name), failure)) return decision;
  }
  return Decision::ask;
}

bool Grants::store(uid_t user, const std::string& name, Decision decision) const {
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(folder_, failure)) {
    const auto stored = entry.path().filename().native();
    if (!stored.starts_with(beginning(Decision::allow, user)) &&
        !stored.starts_with(beginning(Decision::refuse, user))) {
      continue;
    }
    if (!std::filesystem::remove(entry.path(), failure)) return false;
  }
  if (failure) return false;
  return decision == Decision::ask || std::ofstream(file(decision, user, name)).is_open();
}

}  // namespace vorrin::input_helper
