#include "app/logic_self_check.h"

#include <array>
#include <cstdio>
#include <memory>
#include <source_location>

#include "bridge/program_engine.h"
#include "platform/fatal_error.h"
#include "platform/run_loop.h"
#include "platform/uuid.h"
#include "settings/preset_store.h"

namespace vorrin {

namespace {

PresetStore openStore(const std::string& domain) {
  const std::optional<UserDefaults> defaults = UserDefaults::suite(domain);
  if (!defaults) {
    endWithDiagnostic("Assertion failed", "the private domain exists",
                      std::source_location::current());
  }
  return PresetStore(*defaults);
}

bool listsOnly(const PresetStore& store, const std::string& name, const Preset& preset) {
  return store.all().value == std::map<std::string, Preset>{{name, preset}};
}

void checkSaving(const std::string& domain, const Preset& preset) {
  const PresetStore store = openStore(domain);
  assertThat(store.save(preset, " Test "), "a preset is saved");
  const auto reopened = openStore(domain).all().value;
  assertThat(reopened.contains("Test") && reopened.at("Test") == preset,
             "a second store reads the preset under its trimmed name");
  assertThat(!store.save(preset, " "), "a blank name is refused");
  Preset replacement = preset;
  replacement.digit = 9;
  assertThat(store.save(replacement, "Test"), "a preset is replaced");
  assertThat(store.all().value.size() == 1, "replacing adds no second preset");
  assertThat(store.all().value.at("Test") == replacement, "the replacement is what is stored");
  Preset invalid = preset;
  invalid.keys = {48, 48};
  assertThat(!store.save(invalid, "Invalid"), "an invalid preset is refused");
}

void checkRenamingAndDeleting(const std::string& domain, const Preset& preset) {
  const PresetStore store = openStore(domain);
  assertThat(store.rename("Test", " Renamed "), "a preset is renamed");
  const auto renamed = store.all().value;
  assertThat(
      !renamed.contains("Test") && renamed.contains("Renamed") && renamed.at("Renamed").digit == 9,
      "renaming keeps the values");
  assertThat(store.save(preset, "Other"), "a second preset is saved");
  assertThat(!store.rename("Renamed", "Other"), "renaming to a taken name is refused");
  assertThat(!store.rename("Renamed", " "), "renaming to a blank name is refused");
  assertThat(store.remove("Renamed"), "a preset is deleted");
  assertThat(!store.remove("Renamed"), "deleting it again is refused");
  assertThat(listsOnly(openStore(domain), "Other", preset), "the deletion persists");
  assertThat(store.remove("Other"), "the last preset is deleted");
  assertThat(store.all().value.empty(), "no preset is left");
}

void checkPresets() {
  const std::string domain = "vorrin-test-" + newUuidString();
  const Preset preset{{0.12, 0.003}, {97, 98}, 4, {false, true}};
  checkSaving(domain, preset);
  checkRenamingAndDeleting(domain, preset);
  std::puts(
      "PASS: rename preserves values, rejects collisions/empty names; deletion persists and "
      "handles "
      "last preset.");
  UserDefaults::removePersistentDomain(domain);
  std::puts(
      "PASS: named preset persistence, all fields round-trip, trimmed names, replacement and "
      "invalid-input rejection.");
}

using Counters = std::array<int, 2>;

void checkToggling() {
  assertThat(validInterval("0.05") == 0.05, "an interval is read");
  assertThat(!validInterval("nan") && !validInterval("0") && !validInterval("inf"),
             "unusable intervals are refused");
  assertThat(engine.handle(50, true, false, false), "the shortcut is swallowed");
  assertThat(engine.running[0], "the shortcut starts its macro");
  engine.handle(50, true, true, false);
  assertThat(engine.running[0], "autorepeat does not toggle");
  engine.handle(50, false, false, false);
  engine.toggle(1);
}

void checkTimersAndEscape(const Counters& counters) {
  RunLoop::main().runFor(0.26);
  assertThat(counters[0] >= 4 && counters[1] > 20, "both timers run independently");
  engine.handle(53, true, false, false);
  const Counters afterEscape = counters;
  RunLoop::main().runFor(0.08);
  assertThat(counters == afterEscape, "no action follows Escape");
  assertThat(!engine.running[0] && !engine.running[1], "Escape stops both macros");
  engine.enabled[0] = false;
  engine.toggle(0);
  assertThat(!engine.running[0], "a disabled macro does not start");
}

void checkEngine() {
  const auto counters = std::make_shared<Counters>();
  engine.emit = [counters](int macro) { ++counters->at(static_cast<std::size_t>(macro)); };
  checkToggling();
  checkTimersAndEscape(*counters);
  std::printf(
      "PASS: interval validation, toggle, autorepeat suppression, independent timers, disabled "
      "macro, Escape stop, no output after stop. Simulated counts: [%d, %d]. No physical events "
      "emitted.\n",
      (*counters)[0], (*counters)[1]);
}

}  // namespace

void runLogicSelfCheck() {
  checkPresets();
  checkEngine();
}

}  // namespace vorrin
