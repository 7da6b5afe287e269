// What may stand in the place of the named presets, and the names that a user may type.

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/fake/defaults/fake_defaults.h"
#include "platform/fatal_error.h"
#include "platform/user_defaults.h"
#include "settings/preset_json.h"
#include "settings/preset_store.h"

using vorrin::assertThat;

namespace {

const vorrin::Preset start{{0.05, 0.001}, {50, 48}, 1, {true, true}};

void checkCoding(const std::string& json) {
  const auto preset = vorrin::decodePreset(json);
  if (preset) {
    const auto text = vorrin::encodePreset(*preset);
    assertThat(text && vorrin::decodePreset(*text) == preset, "a preset reads back as written");
  }
  const auto presets = vorrin::decodePresets(json);
  if (!presets) return;
  const auto text = vorrin::encodePresets(*presets);
  assertThat(text && vorrin::decodePresets(*text) == presets, "presets read back as written");
}

/// The name that `typed` gives, where it can be stored: what a text field gives is always UTF-8.
std::optional<std::string> storedName(const std::string& typed) {
  auto name = vorrin::presetName(typed);
  if (name && !vorrin::encodePresets({{*name, start}})) return std::nullopt;
  return name;
}

void checkStore(const std::string& json, const std::string& name, const std::string& other) {
  const auto defaults = vorrin::UserDefaults::standard();
  const std::array<std::pair<std::string, vorrin::DefaultsObject>, 1> stored{
      {{"namedPresets", json}}};
  assertThat(!defaults.set(stored), "whatever it is, it can be stored");

  const vorrin::PresetStore store(defaults);
  auto expected = store.all().value;
  for (const auto& [key, preset] : expected) {
    assertThat(preset.valid() && !key.empty(), "only what can be used is listed");
  }
  const auto typed = storedName(name);
  assertThat(store.save(start, name) == typed.has_value(), "a good name is all that saving takes");
  if (!typed) return;
  expected.insert_or_assign(*typed, start);
  assertThat(store.all().value == expected, "saving leaves the others alone");

  const auto renamed = storedName(other);
  const bool isFree = renamed && (*renamed == *typed || !expected.contains(*renamed));
  assertThat(store.rename(*typed, other) == isFree, "a free name is all that renaming takes");
  if (isFree) {
    expected.erase(*typed);
    expected.emplace(*renamed, start);
  }
  assertThat(store.all().value == expected, "renaming leaves the others alone");

  const auto last = isFree ? *renamed : *typed;
  assertThat(store.remove(last), "what is there can be deleted");
  expected.erase(last);
  assertThat(store.all().value == expected, "deleting leaves the others alone");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  // A backslash and any other character end each name.
  const auto name = input.ConsumeRandomLengthString(200);
  const auto other = input.ConsumeRandomLengthString(200);
  const auto json = input.ConsumeRemainingBytesAsString();
  checkCoding(json);
  checkStore(json, name, other);
  vorrin::fake::resetStorage();
  return 0;
}
