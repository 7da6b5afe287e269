#include "bench/session.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "settings/settings_persistence.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::bench {

namespace fs = std::filesystem;
using x11_tests::Process;

PrivateHome::PrivateHome() {
  std::string pattern = (fs::temp_directory_path() / "vorrin-home-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for a private home");
  path_ = pattern;
  fs::create_directories(path_ / "Library/Logs");
  setenv("HOME", path_.c_str(), 1);
  setenv("XDG_CONFIG_HOME", (path_ / "config").c_str(), 1);
  setenv("XDG_RUNTIME_DIR", path_.c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
}

PrivateHome::~PrivateHome() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string PrivateHome::status() const {
  std::ifstream file(path_ / "Library/Logs/Vorrin-status.txt");
  return {std::istreambuf_iterator<char>(file), {}};
}

std::unique_ptr<Process> startVorrin(const Stage& stage) {
  return std::make_unique<Process>(std::vector<std::string>{VORRIN_PROGRAM},
                                   x11_tests::Environment{{"DISPLAY", stage.desktop.display()}});
}

std::unique_ptr<Process> startConnectedVorrin(const Stage& stage, const Preset& settings) {
  storeCurrentSettings(UserDefaults::standard(), settings);
  fs::remove(stage.home.path() / "Library/Logs/Vorrin-status.txt");
  auto vorrin = startVorrin(stage);
  const bool connected = x11_tests::waitUntil(
      [&stage] { return stage.home.status().find("ready=true") != std::string::npos; });
  if (!connected) throw std::runtime_error("Vorrin did not connect");
  return vorrin;
}

Preset clickingEvery(double seconds) {
  return {{0.05, seconds}, {50, tabKey}, 1, {true, true}};
}

}  // namespace vorrin::bench
