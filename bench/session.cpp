#include "bench/session.h"

#include <cstdlib>
#include <stdexcept>

#include "settings/settings_persistence.h"

namespace vorrin::bench {

using x11_tests::Program;

SharedHome::SharedHome() {
  for (const auto& [name, value] : environment()) setenv(name.c_str(), value.c_str(), 1);
}

std::unique_ptr<Program> startVorrin(const Stage& stage) {
  return std::make_unique<Program>(stage.desktop.display(), stage.home);
}

std::unique_ptr<Program> startConnectedVorrin(const Stage& stage, const Preset& settings) {
  storeCurrentSettings(UserDefaults::standard(), settings);
  std::filesystem::remove(stage.home.path() / "Library/Logs/Vorrin-status.txt");
  auto vorrin = startVorrin(stage);
  if (!vorrin->waitUntilReady()) throw std::runtime_error("Vorrin did not connect");
  return vorrin;
}

Preset clickingEvery(double seconds) {
  return {{0.05, seconds}, {50, tabKey}, 1, {true, true}};
}

}  // namespace vorrin::bench
