#include "bench/session.h"

#include <array>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

#include "settings/preset_json.h"
#include "settings/settings_persistence.h"
#include "tests/x11/harness/other_client.h"
#include "tests/x11/harness/wait.h"
#include "tests/x11/harness/windows.h"

namespace vorrin::bench {

using x11_tests::Program;

SharedHome::SharedHome() {
  for (const auto& [name, value] : environment()) setenv(name.c_str(), value.c_str(), 1);
}

std::unique_ptr<Program> startVorrin(const Stage& stage) {
  return std::make_unique<Program>(stage.desktop.display(), stage.home);
}

std::unique_ptr<Program> startConnectedVorrin(const Stage& stage, const Preset& settings) {
  if (storeCurrentSettings(UserDefaults::standard(), settings)) {
    throw std::runtime_error("the settings cannot be stored");
  }
  std::filesystem::remove(stage.home.path() / "Library/Logs/Vorrin-status.txt");
  auto vorrin = startVorrin(stage);
  // It connects before it shows its window, which would take the focus from whoever comes next.
  x11_tests::Windows windows(stage.desktop.display());
  const bool inFront = x11_tests::waitUntil([&windows] {
    const auto window = windows.titled("Vorrin");
    return window && windows.active() == *window;
  });
  // It gives the shortcuts free once it knows itself that it is in front.
  x11_tests::OtherClient probe(stage.desktop.display());
  if (!inFront || !vorrin->waitUntilReady() || !probe.waitUntilFree(settings.keys[1]))
    throw std::runtime_error("Vorrin did not connect");
  return vorrin;
}

void waitForShortcut(const Stage& stage, std::uint16_t virtualKey) {
  x11_tests::OtherClient probe(stage.desktop.display());
  if (!probe.waitUntilHeld(virtualKey)) {
    throw std::runtime_error("Vorrin does not listen to the shortcut");
  }
}

void storePresets(int count) {
  std::map<std::string, Preset> presets;
  for (int i = 0; i < count; ++i) {
    presets["Preset " + std::to_string(i)] = clickingEvery(0.001 * (1 + i % 1000));
  }
  const auto json = encodePresets(presets);
  if (!json) throw std::runtime_error("the presets cannot be encoded");
  const std::array<std::pair<std::string, DefaultsObject>, 1> entry{
      {{"namedPresets", Data{*json}}}};
  if (UserDefaults::standard().set(entry)) {
    throw std::runtime_error("the presets cannot be stored");
  }
}

Preset clickingEvery(double seconds) {
  return {{0.05, seconds}, {50, tabKey}, 1, {true, true}};
}

}  // namespace vorrin::bench
