#pragma once

#include "platform/user_defaults.h"
#include "settings/preset.h"

namespace vorrin {

/// The settings that `defaults` holds, always valid: whatever is missing, of another type or
/// unusable is replaced by its start value, and the digit is brought into 0 to 9. Writes nothing.
Preset loadCurrentSettings(const UserDefaults& defaults);

/// Stores a valid preset as the current settings, in one commit.
void storeCurrentSettings(const UserDefaults& defaults, const Preset& settings);

/// Stores one enabled flag of the current settings.
void storeEnabled(const UserDefaults& defaults, int macro, bool enabled);

}  // namespace vorrin
