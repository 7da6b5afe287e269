#include "platform/linux/foundation/defaults_domain.h"

#include <algorithm>
#include <system_error>

#include "platform/linux/foundation/domain_files.h"
#include "platform/linux/foundation/storage_notice.h"

namespace vorrin {

namespace {

/// The file itself, where links lead to it: what SQLite keeps beside it lies there.
std::filesystem::path resolved(const std::filesystem::path& file) {
  std::error_code error;
  auto target = std::filesystem::canonical(file, error);
  return error ? file : target;
}

bool isStored(DomainConnection& connection, const std::string& key, const DefaultsObject& value) {
  std::optional<DefaultsObject> stored;
  return connection.read(key, stored).isDone() && stored == value;
}

}  // namespace

DefaultsDomain::DefaultsDomain(const std::filesystem::path& file)
    : file_(resolved(file)), patience_(file_) {}

StorageResult DefaultsDomain::make() {
  return perform(WhenMissing::make, [](DomainConnection& connection) {
    return connection.isBlank() ? connection.write({}) : StorageResult();
  });
}

std::optional<DefaultsObject> DefaultsDomain::object(const std::string& key) {
  std::optional<DefaultsObject> value;
  const auto result = perform(WhenMissing::leave, [&](DomainConnection& connection) {
    return connection.isBlank() ? StorageResult() : connection.read(key, value);
  });
  if (result.status != StorageStatus::missing) tellFailure(result);
  return value;
}

void DefaultsDomain::set(std::span<const std::pair<std::string, DefaultsObject>> values) {
  if (values.empty()) return;
  tellFailure(perform(WhenMissing::make, [&](DomainConnection& connection) {
    const bool unchanged =
        !connection.isBlank() && std::all_of(values.begin(), values.end(), [&](const auto& entry) {
          return isStored(connection, entry.first, entry.second);
        });
    return unchanged ? StorageResult() : connection.write(values);
  }));
}

void DefaultsDomain::tellFailure(const StorageResult& result) const {
  if (result.isDone()) return;
  tellOnce("No full access to the settings in “" + file_.string() + "”: " + result.cause);
}

StorageResult DefaultsDomain::perform(WhenMissing whenMissing, const Operation& operation) {
  patience_.beginOperation();
  StorageResult result;
  constexpr int mostAttempts = 4;
  for (int attempt = 0; attempt < mostAttempts; ++attempt) {
    result = connect();
    if (result.isDone()) result = operation(*connection_);
    if (result.isDone()) break;
    const auto mended = mend(result, whenMissing);
    connection_.reset();
    if (!mended.isDone()) {
      result = mended;
      break;
    }
  }
  patience_.endOperation(result.status == StorageStatus::busy);
  return result;
}

StorageResult DefaultsDomain::connect() {
  // A file that was blank may have been filled by another process.
  if (connection_ && !connection_->isBlank() && !connection_->hasMoved()) return {};
  connection_ = std::make_unique<DomainConnection>(file_, patience_);
  return connection_->inspect();
}

StorageResult DefaultsDomain::mend(const StorageResult& fault, WhenMissing whenMissing) {
  switch (fault.status) {
    case StorageStatus::missing:
      return whenMissing == WhenMissing::make ? makeDomainFile(file_, patience_) : fault;
    case StorageStatus::stale:
      return {};
    case StorageStatus::damaged:
      return setAside("damaged", fault.cause);
    case StorageStatus::newer:
      return setAside("newer", fault.cause);
    default:
      return fault;
  }
}

StorageResult DefaultsDomain::setAside(const std::string& reason, const std::string& cause) {
  const auto replaced = [this] { return connection_->hasMoved(); };
  std::filesystem::path newName;
  auto result = setDomainFileAside(file_, reason, replaced, patience_, newName);
  if (!result.isDone()) {
    result.cause = cause + "; not set aside: " + result.cause;
  } else if (!newName.empty()) {
    tell("The settings in “" + file_.string() + "” cannot be used (" + cause +
         ") and were set aside as “" + newName.string() + "”");
  }
  return result;
}

}  // namespace vorrin
