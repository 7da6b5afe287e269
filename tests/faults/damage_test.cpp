#include <gtest/gtest.h>

#include <iostream>
#include <random>

#include "fault_test.h"
#include "platform/user_defaults.h"
#include "settings/settings_persistence.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin::faults {
namespace {

const Preset usual{{0.125, 2.5}, {keys::f6, keys::f7}, 4, {true, false}};

Stored storeMuch() {
  const auto defaults = UserDefaults::standard();
  storeCurrentSettings(defaults, usual);
  const PresetStore presets(defaults);
  for (int number = 0; number < 60; ++number) {
    Preset preset = usual;
    preset.intervals[0] = 0.001 * (number + 1);
    preset.digit = number % 10;
    EXPECT_TRUE(presets.save(preset, "Preset number " + std::to_string(number)));
  }
  return readStored();
}

std::string damagedAtRandomBytes(std::string content, std::mt19937& random) {
  const std::size_t bytes = 1 + random() % 16;
  for (std::size_t count = 0; count < bytes; ++count) {
    char& byte = content[random() % content.size()];
    byte = static_cast<char>(byte ^ static_cast<char>(1 + random() % 255));
  }
  return content;
}

struct Damage : DefaultsSandbox {
  std::string sound;
  Stored before;

  /// What a program that starts on `content` makes of it: "whole" when it finds all that was
  /// stored, "aside" when it has begun anew and kept the file; anything else is an error.
  [[nodiscard]] std::string outcomeOf(const std::string& content) const {
    std::filesystem::remove_all(settings);
    std::filesystem::create_directories(settings);
    fill(standardFile(), content);
    const Stored found = readStored();
    const auto files = namesIn(settings);
    // Nothing has been written yet that would need a new file.
    const bool isAside = files.size() == 1 && contentOf(settings / files.front()) == content &&
                         files.front().find(".damaged-") != std::string::npos;
    if (!isAside && !(found == before)) return "altered";
    if (isAside && !(found == fresh_)) return "neither old nor new";
    return worksOn() ? (isAside ? "aside" : "whole") : "lost what was stored afterwards";
  }

 private:
  [[nodiscard]] bool worksOn() const {
    const auto defaults = UserDefaults::standard();
    Preset changed = usual;
    changed.digit = 9;
    storeCurrentSettings(defaults, changed);
    const bool isSaved = PresetStore(defaults).save(changed, "after");
    const Stored after = readStored();
    return isSaved && after.settings == changed && after.presets.at("after") == changed;
  }

  const Stored fresh_ = readStored();
};

TEST_F(Damage, leaves_all_that_was_stored_or_sets_the_file_aside_with_a_message) {
  const std::int64_t damages = amount("damages", 1000);
  const auto seed = static_cast<std::mt19937::result_type>(amount("seed", 1));
  before = storeMuch();
  sound = contentOf(standardFile());
  ChildProcess child([&] {
    std::mt19937 random(seed);
    std::map<std::string, std::int64_t> outcomes;
    for (std::int64_t damage = 0; damage < damages; ++damage) {
      ++outcomes[outcomeOf(damagedAtRandomBytes(sound, random))];
    }
    for (const auto& [outcome, count] : outcomes) {
      std::fprintf(stderr, "outcome: %s %lld\n", outcome.c_str(), static_cast<long long>(count));
    }
    return outcomes["whole"] + outcomes["aside"] == damages;
  });
  EXPECT_TRUE(child.wait());
  const std::string told = child.errors();
  std::cout << told.substr(std::min(told.find("outcome: "), told.size()));
  const int setAside = linesWith(told, "were set aside as");
  EXPECT_GT(setAside, 0);
  EXPECT_EQ(linesWith(told, "outcome: aside " + std::to_string(setAside)), 1);
}

struct DamagedStart : FaultTest {};

TEST_F(DamagedStart, the_program_works_on_any_damaged_file) {
  constexpr int starts = 5;
  start();
  const auto file = settingsDirectory() / "org.vorrin.Vorrin.sqlite3";
  const std::string sound = contentOf(file);
  for (int round = 0; round < starts && !HasFailure(); ++round) {
    program.reset();
    fill(file, round == 0 ? "no database" : damagedAtRandomBytes(sound, random));
    expectWorkingProgram();
    expectUsableInput();
  }
}

}  // namespace
}  // namespace vorrin::faults
