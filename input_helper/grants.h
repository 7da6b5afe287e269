#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <utility>

namespace vorrin::input_helper {

/// What a user decided about being asked.
enum class Decision { ask, allow, refuse };

/// What the users of this machine decided, each in a file named after the decision, the user's
/// number and name: a number that is somebody else's by now decides nothing.
class Grants {
 public:
  explicit Grants(std::filesystem::path folder) : folder_(std::move(folder)) {}

  [[nodiscard]] Decision of(uid_t user, const std::string& name) const;
  /// In place of what the user of this number decided before. `name` may be empty where the user is
  /// to be asked. False when it cannot be stored.
  [[nodiscard]] bool store(uid_t user, const std::string& name, Decision decision) const;

 private:
  [[nodiscard]] std::filesystem::path file(Decision decision, uid_t user,
                                           const std::string& name) const;
  std::filesystem::path folder_;
};

}  // namespace vorrin::input_helper
