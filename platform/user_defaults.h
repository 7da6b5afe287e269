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

/// A stored value; its type is kept. A real is finite.
using DefaultsObject = std::variant<bool, std::int64_t, double, std::string, Data>;

/// Why something could not be read or stored, in words for the user; nothing when it could.
using StorageFailure = std::optional<std::string>;

/// What reading gives. After a failure nothing is known of what is stored, and `value` is empty.
template <class T>
struct [[nodiscard]] Reading {
  T value{};
  StorageFailure failure;
};

/// A domain of small persistent values under text keys. Copies refer to the same domain. What one
/// object or process writes, every other reads at once; a write that was stored survives the end of
/// the process at any instant. Failures are also told on standard error, each once.
class UserDefaults {
 public:
  /// The user's own domain of this program.
  static UserDefaults standard();

  /// A domain called `name` (letters, digits, '-', '.', '_') beside the user's own, for checks;
  /// nothing when it cannot be made. On Linux no other process sees it.
  static std::optional<UserDefaults> suite(const std::string& name);

  /// Removes the suite called `name` with everything in it and every file of it.
  static void removePersistentDomain(const std::string& name);

  /// The value under `key` with its type; nothing when there is none of a type above.
  Reading<std::optional<DefaultsObject>> object(const std::string& key) const;

  /// Stores all `values` in one commit: after a crash either all or none of them are there. Other
  /// keys keep what they have.
  [[nodiscard]] StorageFailure set(
      std::span<const std::pair<std::string, DefaultsObject>> values) const;

  /// Something about the domain that its user should know, told once: that what was stored could
  /// not be understood, and where it was kept.
  [[nodiscard]] std::optional<std::string> takeNotice() const;

 private:
  struct Native;
  explicit UserDefaults(std::shared_ptr<Native> native);
  std::shared_ptr<Native> native_;
};

}  // namespace vorrin
