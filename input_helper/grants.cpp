#include "input_helper/grants.h"

#include <fstream>
#include <system_error>

namespace vorrin::input_helper {
namespace {

std::string beginning(Decision decision, uid_t user) {
  return (decision == Decision::allow ? "allow " : "refuse ") + std::to_string(user) + " ";
}

}  // namespace

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
