#pragma once

#include <filesystem>

#include "platform/linux/foundation/file_descriptor.h"
#include "platform/user_defaults.h"

namespace vorrin {

/// Makes `folder`, and those above it that are missing, for this user alone, and takes the lock on
/// it, which one process holds at a time. Closing what is returned gives it back, as does the end
/// of the process. Waits for at most half a second, since this holds up the main thread.
Reading<FileDescriptor> lockFolder(const std::filesystem::path& folder);

}  // namespace vorrin
