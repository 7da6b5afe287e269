#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vorrin::input_helper {

/// How long the permission to start the helper lasts for one user.
enum class PermissionTerm {
  ask,    ///< it is asked for at every start, as polkit's own rules say
  allow,  ///< until it is taken back, in an active session on this machine
  deny,   ///< it is refused without asking
};

/// "ask", "allow" or "deny".
std::optional<PermissionTerm> permissionTerm(std::string_view word);

/// The polkit rule that says so for the user of this name; empty for `ask`, which needs none.
/// Nothing for a name that a rule cannot hold.
std::optional<std::string> permissionRule(PermissionTerm term, std::string_view userName);

}  // namespace vorrin::input_helper
