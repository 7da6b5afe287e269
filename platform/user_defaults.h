#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <variant>

namespace vorrin {

/// Raw bytes, a type of its own so that a text is never taken for them.
struct Data {
  std::string bytes;
  bool operator==(const Data&) const = default;
};

/// A stored value; its type is kept.
using DefaultsObject = std::variant<bool, std::int64_t, double, std::string, Data>;

/// A domain of small persistent values under text keys. Copies refer to the same domain. What one
/// object or process writes, every other reads at once; a committed write survives the end of the
/// process at any instant. Failures of the storage are told once on standard error and otherwise
/// show only in what a later read gives.
class UserDefaults {
 public:
  /// The user's own domain of this program.
  static UserDefaults standard();

  /// The domain called `name` (letters, digits, '-', '.', '_'), made on first use; nothing when it
  /// cannot be made. Where the usual place cannot be written it lies among the temporary files.
  static std::optional<UserDefaults> suite(const std::string& name);

  /// Removes the suite called `name` with everything in it and every file of it.
  static void removePersistentDomain(const std::string& name);

  /// The value under `key` with its type; nothing when there is none or it cannot be read.
  [[nodiscard]] std::optional<DefaultsObject> object(const std::string& key) const;

  /// Stores all `values` in one commit: after a crash either all or none of them are there.
  void set(std::span<const std::pair<std::string, DefaultsObject>> values) const;

 private:
  struct Native;
  explicit UserDefaults(std::shared_ptr<Native> native);
  std::shared_ptr<Native> native_;
};

}  // namespace vorrin
