#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "platform/linux/foundation/domain_connection.h"
#include "platform/linux/foundation/lock_patience.h"
#include "platform/linux/foundation/storage_result.h"
#include "platform/user_defaults.h"

namespace vorrin {

/// One domain and its file. Failures are told on standard error, each once.
class DefaultsDomain {
 public:
  /// Touches nothing yet.
  explicit DefaultsDomain(const std::filesystem::path& file);

  /// Makes the file and its table unless they are there.
  [[nodiscard]] StorageResult make();

  std::optional<DefaultsObject> object(const std::string& key);
  void set(std::span<const std::pair<std::string, DefaultsObject>> values);

  /// Tells a failure of the storage that kept this domain from being made or written.
  void tellFailure(const StorageResult& result) const;

 private:
  using Operation = std::function<StorageResult(DomainConnection&)>;
  enum class WhenMissing { leave, make };

  /// Connects and runs `operation`, again after everything that `mend` can put right.
  StorageResult perform(WhenMissing whenMissing, const Operation& operation);
  StorageResult connect();
  StorageResult mend(const StorageResult& fault, WhenMissing whenMissing);
  StorageResult setAside(const std::string& reason, const std::string& cause);

  std::filesystem::path file_;
  LockPatience patience_;
  std::unique_ptr<DomainConnection> connection_;
};

}  // namespace vorrin
