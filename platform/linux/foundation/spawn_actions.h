#pragma once

#include <spawn.h>

namespace vorrin {

/// What `posix_spawn` does with descriptors before the program starts.
struct SpawnActions {
  posix_spawn_file_actions_t value{};
  SpawnActions() { posix_spawn_file_actions_init(&value); }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&value); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
};

}  // namespace vorrin
