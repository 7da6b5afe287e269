#include "settings/preset_store.h"

#include <array>
#include <utility>

#include "platform/text.h"
#include "settings/preset_json.h"

namespace vorrin {
namespace {

constexpr auto storageKey = "namedPresets";
constexpr std::size_t longestName = 80;

}  // namespace

std::optional<std::string> presetName(std::string_view typed) {
  std::string name = trimmed(typed);
  if (name.empty() || characterCount(name) > longestName) return std::nullopt;
  return name;
}

PresetStore::PresetStore(UserDefaults defaults) : defaults_(std::move(defaults)) {}

Reading<std::map<std::string, Preset>> PresetStore::all() const {
  const auto [object, failure] = defaults_.object(storageKey);
  if (failure) return {{}, failure};
  const auto* data = object ? std::get_if<Data>(&*object) : nullptr;
  auto presets = data ? decodePresets(data->bytes) : std::nullopt;
  if (!presets) return {};
  std::erase_if(*presets,
                [](const auto& entry) { return entry.first.empty() || !entry.second.valid(); });
  return {*std::move(presets), {}};
}

bool PresetStore::save(const Preset& preset, std::string_view name) const {
  const auto accepted = presetName(name);
  if (!accepted || !preset.valid()) return false;
  auto [presets, failure] = all();
  if (failure) return false;
  presets[*accepted] = preset;
  const auto stored = write(std::move(presets));
  if (!stored) return false;
  const auto entry = stored->find(*accepted);
  return entry != stored->end() && entry->second == preset;
}

bool PresetStore::rename(const std::string& from, std::string_view to) const {
  const auto accepted = presetName(to);
  if (!accepted) return false;
  auto [presets, failure] = all();
  auto entry = presets.extract(from);
  if (failure || entry.empty() || presets.contains(*accepted)) return false;
  entry.key() = *accepted;
  presets.insert(std::move(entry));
  return write(presets) == presets;
}

bool PresetStore::remove(const std::string& name) const {
  auto [presets, failure] = all();
  return !failure && presets.erase(name) != 0 && write(presets) == presets;
}

std::optional<std::map<std::string, Preset>> PresetStore::write(
    std::map<std::string, Preset> presets) const {
  auto json = encodePresets(presets);
  if (!json) return std::nullopt;
  const std::array<std::pair<std::string, DefaultsObject>, 1> values{
      {{storageKey, Data{*std::move(json)}}}};
  if (defaults_.set(values)) return std::nullopt;
  // The text that was written means what was written.
  if (defaults_.object(storageKey).value == values.front().second) return presets;
  auto [stored, failure] = all();
  return failure ? std::nullopt : std::optional(std::move(stored));
}

}  // namespace vorrin
