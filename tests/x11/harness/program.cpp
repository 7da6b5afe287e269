#include "tests/x11/harness/program.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vorrin::x11_tests {

namespace {

Environment environmentOf(const std::string& display, const Home& home) {
  Environment environment = home.environment();
  environment["DISPLAY"] = display;
  // A sanitizer's finding must not look like an exit status of the program's own.
  environment["ASAN_OPTIONS"] = "exitcode=99";
  return environment;
}

}  // namespace

Home::Home() {
  std::string name = (std::filesystem::temp_directory_path() / "vorrin-home-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
  path_ = name;
  // The program writes its status file only where this is there.
  std::filesystem::create_directories(path_ / "Library" / "Logs");
}

Home::~Home() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

Environment Home::environment() const {
  return {{"HOME", path_.string()},
          {"XDG_CONFIG_HOME", (path_ / "config").string()},
          {"XDG_CACHE_HOME", (path_ / "cache").string()},
          {"XDG_DATA_HOME", (path_ / "data").string()},
          {"XDG_RUNTIME_DIR", path_.string()},
          {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
          {"WAYLAND_DISPLAY", ""},
          {"XDG_SESSION_TYPE", "x11"},
          {"QT_QPA_PLATFORM", "xcb"}};
}

Program::Program(const std::string& display, const Home& home)
    : statusFile_(home.path() / "Library" / "Logs" / "Vorrin-status.txt"),
      process_({VORRIN_PROGRAM}, environmentOf(display, home)) {}

std::optional<std::string> Program::status() const {
  std::ifstream file(statusFile_, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

bool Program::waitForStatus(const std::string& flags) const {
  return waitUntil([&] { return status() == flags + "\n"; });
}

}  // namespace vorrin::x11_tests
