// The file of a domain of settings, as anything may have left it: it is read, written and read
// again through the settings and presets that live in it.

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/fatal_error.h"
#include "platform/user_defaults.h"
#include "settings/preset_store.h"
#include "settings/settings_persistence.h"

using vorrin::assertThat;

namespace {

const vorrin::Preset someSettings{{0.25, 30}, {97, 101}, 7, {false, true}};

/// A home for settings in memory, so that a commit costs no disk.
std::filesystem::path makeHome() {
  std::string name = "/dev/shm/vorrin-fuzz-XXXXXX";
  assertThat(::mkdtemp(name.data()) != nullptr, "there is room in memory for files");
  ::setenv("XDG_CONFIG_HOME", name.c_str(), 1);
  std::filesystem::create_directory(name + "/vorrin");
  return name;
}

/// Removed at the end, whatever ends the program but a crash.
class Home {
 public:
  Home() = default;
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;
  ~Home() { std::filesystem::remove_all(root_); }
  [[nodiscard]] std::filesystem::path directory() const { return root_ / "vorrin"; }

 private:
  std::filesystem::path root_ = makeHome();
};

void store(const std::filesystem::path& file, const std::uint8_t* data, std::size_t size) {
  const std::vector<char> bytes(data, data + size);
  std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

void empty(const std::filesystem::path& directory) {
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    std::filesystem::remove_all(entry);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Home home;
  store(home.directory() / "org.vorrin.Vorrin.json", data, size);

  const auto defaults = vorrin::UserDefaults::standard();
  const auto [settings, failure] = vorrin::loadCurrentSettings(defaults);
  assertThat(settings.valid() && !failure, "a damaged file is no obstacle");
  const vorrin::PresetStore presets(defaults);
  for (const auto& [name, preset] : presets.all().value) {
    assertThat(preset.valid() && !name.empty(), "only what can be used is listed");
  }

  assertThat(!vorrin::storeCurrentSettings(defaults, someSettings), "settings can be stored");
  assertThat(presets.save(someSettings, "Fuzz"), "presets can be saved");
  const auto other = vorrin::UserDefaults::standard();
  assertThat(vorrin::loadCurrentSettings(other).value == someSettings, "settings are kept");
  assertThat(vorrin::PresetStore(other).all().value.contains("Fuzz"), "presets are kept");
  empty(home.directory());
  return 0;
}
