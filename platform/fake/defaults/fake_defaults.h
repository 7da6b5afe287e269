#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/user_defaults.h"

namespace vorrin::fake {

/// Everything that one call of `UserDefaults::set` stored together.
using Commit = std::vector<std::pair<std::string, DefaultsObject>>;

/// Storage of all domains, in memory, that tests look into and make fail.
struct Storage {
  StorageFailure readFailure;   ///< why nothing can be read
  StorageFailure writeFailure;  ///< why nothing can be stored; commits are recorded all the same
  std::optional<std::string> notice;  ///< what `UserDefaults::takeNotice` gives next
  bool losesWrites = false;           ///< commits change nothing, and nobody is told
  bool refusesSuites = false;         ///< `UserDefaults::suite` gives nothing
  std::vector<Commit> commits;        ///< in the order of the calls, of all domains
};

Storage& storage();

/// Forgets all domains and records.
void resetStorage();

}  // namespace vorrin::fake
