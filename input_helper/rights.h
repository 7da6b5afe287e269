#pragma once

namespace vorrin::input_helper {

/// Leaves this process none of its starter's rights: as root it becomes the user it runs as
/// everywhere else, in the group that may read input devices. False when it could not.
[[nodiscard]] bool giveUpRights();

/// Where the users' decisions are kept.
inline constexpr const char* decisionsFolder = "/var/lib/vorrin-input-helper";

}  // namespace vorrin::input_helper
