#pragma once

#include "platform/user_defaults.h"
#include "settings/preset.h"

namespace vorrin {

/// The settings that `defaults` holds, always valid: whatever is missing, of another type or
/// unusable is replaced by its start value, and the digit is brought into 0 to 9. After a failure
/// they are the start values, which must not be stored then. Writes nothing.
Reading<Preset> loadCurrentSettings(const UserDefaults& defaults);

/// Stores a valid preset as the current settings, in one commit.
[[nodiscard]] StorageFailure storeCurrentSettings(const UserDefaults& defaults,
                                                  const Preset& settings);

}  // namespace vorrin
