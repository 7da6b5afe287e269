#include "input_helper/permission_rule.h"

namespace vorrin::input_helper {
namespace {

/// A rule is a program, so nothing that ends a string may come into it.
bool isPlain(std::string_view userName) {
  constexpr std::string_view plain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.-@";
  return !userName.empty() && userName.find_first_not_of(plain) == std::string_view::npos;
}

}  // namespace

std::optional<PermissionTerm> permissionTerm(std::string_view word) {
  if (word == "ask") return PermissionTerm::ask;
  if (word == "allow") return PermissionTerm::allow;
  if (word == "deny") return PermissionTerm::deny;
  return std::nullopt;
}

std::optional<std::string> permissionRule(PermissionTerm term, std::string_view userName) {
  if (term == PermissionTerm::ask) return std::string();
  if (!isPlain(userName)) return std::nullopt;
  const bool allow = term == PermissionTerm::allow;
  return "// Written by Vorrin, at the wish of the user it names.\n"
         "polkit.addRule(function(action, subject) {\n"
         "  if (action.id == \"org.vorrin.input-helper\" && subject.user == \"" +
         std::string(userName) + "\"" + (allow ? " && subject.local && subject.active" : "") +
         ") {\n    return polkit.Result." + (allow ? "YES" : "NO") + ";\n  }\n});\n";
}

}  // namespace vorrin::input_helper
