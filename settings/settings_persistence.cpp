#include "settings/settings_persistence.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "platform/fatal_error.h"
#include "settings/choices.h"
#include "settings/whole_number.h"

namespace vorrin {
namespace {

using Entry = std::pair<std::string, DefaultsObject>;

constexpr std::array<double, 2> startIntervals{0.05, 0.001};
constexpr std::array<std::uint16_t, 2> startKeys{50, 48};
constexpr std::int64_t startDigit = 1;

std::string intervalEntry(std::size_t macro) {
  return "interval" + std::to_string(macro);
}
std::string keyEntry(std::size_t macro) {
  return "key" + std::to_string(macro);
}
std::string enabledEntry(std::size_t macro) {
  return "enabled" + std::to_string(macro);
}
constexpr auto digitEntry = "digit";

// Numbers and flags that other programs stored are taken in each other's place as far as no value
// is lost by it, as the defaults of macOS do. A text is never a number.

struct ToReal {
  std::optional<double> operator()(bool flag) const { return flag ? 1.0 : 0.0; }
  std::optional<double> operator()(std::int64_t integer) const {
    return static_cast<double>(integer);
  }
  std::optional<double> operator()(double real) const { return real; }
  template <class Other>
  std::optional<double> operator()(const Other&) const {
    return std::nullopt;
  }
};

struct ToInteger {
  std::optional<std::int64_t> operator()(bool flag) const { return flag ? 1 : 0; }
  std::optional<std::int64_t> operator()(std::int64_t integer) const { return integer; }
  std::optional<std::int64_t> operator()(double real) const { return wholeNumber(real); }
  template <class Other>
  std::optional<std::int64_t> operator()(const Other&) const {
    return std::nullopt;
  }
};

Preset startSettings() {
  return {.intervals{startIntervals.begin(), startIntervals.end()},
          .keys{startKeys.begin(), startKeys.end()},
          .digit = startDigit,
          .enabled{true, true}};
}

/// Reads entry by entry and remembers whether one could not be read.
class StoredSettings {
 public:
  explicit StoredSettings(const UserDefaults& defaults) : defaults_(defaults) {}

  double interval(std::size_t macro) {
    const auto stored = read(intervalEntry(macro), ToReal{});
    const bool usable = stored && validInterval(decimalText(*stored));
    return usable ? *stored : startIntervals[macro];
  }

  std::uint16_t key(std::size_t macro) {
    const auto stored = read(keyEntry(macro), ToInteger{});
    const bool usable = stored && isChoice(*stored);
    return usable ? static_cast<std::uint16_t>(*stored) : startKeys[macro];
  }

  bool enabled(std::size_t macro) {
    const auto stored = read(enabledEntry(macro), ToInteger{});
    const bool usable = stored && (*stored == 0 || *stored == 1);
    return usable ? *stored == 1 : true;
  }

  std::int64_t digit() {
    const auto stored = read(digitEntry, ToInteger{});
    return std::clamp<std::int64_t>(stored.value_or(startDigit), 0, 9);
  }

  [[nodiscard]] const StorageFailure& failure() const { return failure_; }

 private:
  template <class Convert>
  auto read(const std::string& key, Convert convert) -> decltype(convert(false)) {
    const auto [object, failure] = defaults_.object(key);
    if (failure) failure_ = failure;
    if (!object) return std::nullopt;
    return std::visit(convert, *object);
  }

  UserDefaults defaults_;
  StorageFailure failure_;
};

}  // namespace

Reading<Preset> loadCurrentSettings(const UserDefaults& defaults) {
  StoredSettings stored(defaults);
  Preset settings{
      .intervals = {stored.interval(0), stored.interval(1)},
      .keys = {stored.key(0), stored.key(1)},
      .digit = stored.digit(),
      .enabled = {stored.enabled(0), stored.enabled(1)},
  };
  if (stored.failure()) return {startSettings(), stored.failure()};
  if (settings.keys[0] == settings.keys[1]) settings.keys = startSettings().keys;
  return {std::move(settings), {}};
}

StorageFailure storeCurrentSettings(const UserDefaults& defaults, const Preset& settings) {
  precondition(settings.valid(), "only valid settings are stored");
  std::array<Entry, 7> entries;
  auto entry = entries.begin();
  for (const std::size_t macro : {0U, 1U}) {
    *entry++ = {intervalEntry(macro), settings.intervals[macro]};
    *entry++ = {keyEntry(macro), std::int64_t{settings.keys[macro]}};
    *entry++ = {enabledEntry(macro), bool{settings.enabled[macro]}};
  }
  *entry = {digitEntry, settings.digit};
  return defaults.set(entries);
}

}  // namespace vorrin
