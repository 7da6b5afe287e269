#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/user_defaults.h"
#include "settings/preset.h"

namespace vorrin {

/// The name that a preset gets when the user typed `typed`: without the white space around it.
/// Nothing when no character or more than 80 are left, counted as a user counts them.
std::optional<std::string> presetName(std::string_view typed);

/// The user's named presets, kept as JSON in one entry of a defaults domain. Nothing is cached, and
/// a write is a success only when reading it back shows it. Every write holds just what `all`
/// lists, so entries that cannot be used disappear with the next one. Nothing is written while the
/// domain cannot be read.
class PresetStore {
 public:
  explicit PresetStore(UserDefaults defaults);

  /// The presets that have a name and are valid. None when what is stored is no JSON of presets,
  /// which one ill-formed preset is enough for.
  Reading<std::map<std::string, Preset>> all() const;

  // These are false, with nothing changed, also when the domain cannot be read or written.

  /// Stores `preset` under the name typed, in place of another of that name. False, with nothing
  /// written, when `presetName` refuses the name or the preset is not valid.
  [[nodiscard]] bool save(const Preset& preset, std::string_view name) const;

  /// Gives the preset called exactly `from` the name typed. False, with nothing written, when there
  /// is no such preset, `presetName` refuses the name, or another preset has it.
  [[nodiscard]] bool rename(const std::string& from, std::string_view to) const;

  /// Deletes the preset called exactly `name`. False, with nothing written, when there is none.
  [[nodiscard]] bool remove(const std::string& name) const;

 private:
  /// Gives what stands stored then; nothing when it could not be written or read.
  [[nodiscard]] std::optional<std::map<std::string, Preset>> write(
      std::map<std::string, Preset> presets) const;

  UserDefaults defaults_;
};

}  // namespace vorrin
