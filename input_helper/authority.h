#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <optional>
#include <string>

namespace vorrin::input_helper {

inline constexpr const char* authorityName = "org.freedesktop.PolicyKit1";

/// What polkit is asked about.
namespace actions {
inline constexpr const char* connect = "org.vorrin.input-helper.connect";
inline constexpr const char* allow = "org.vorrin.input-helper.allow-for-good";
}  // namespace actions

/// What polkit says of somebody's right to an action.
struct Authorization {
  bool isGiven = false;
  bool wouldTakePassword = false;  ///< it is not given, but a question to the user could
  bool isTemporary = false;        ///< given after a question, for some minutes
};

/// Whether whoever has this unique name on the bus may do it; nothing when polkit does not say.
/// `cancellation`: a question to the user may be asked, and taken back by this name; without one
/// nobody is asked.
void checkAuthorization(sd_bus* bus, const std::string& name, const char* action,
                        const std::string& cancellation,
                        std::function<void(std::optional<Authorization>)> answered);
void cancelCheck(sd_bus* bus, const std::string& cancellation);

/// Calls `changed` whenever polkit might answer otherwise than before.
void hearAuthority(sd_bus* bus, std::function<void()> changed);

}  // namespace vorrin::input_helper
