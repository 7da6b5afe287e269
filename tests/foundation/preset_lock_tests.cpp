#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>
#include <thread>

#include "settings/preset_store.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using namespace std::chrono_literals;

const Preset preset{{0.05, 0.001}, {50, 48}, 1, {true, true}};

class PresetLock : public DefaultsSandbox {
 protected:
  PresetLock() {
    for (const auto& name : before) EXPECT_TRUE(store.save(preset, name));
  }

  /// Saves D while another program holds the lock for so long; whether that is said to be stored.
  [[nodiscard]] bool savesDuringLock(std::chrono::milliseconds duration) const {
    FileDescriptor lock = lockOn(settings);
    std::jthread other([&] {
      std::this_thread::sleep_for(duration);
      lock = FileDescriptor();
    });
    return store.save(preset, "D");
  }

  [[nodiscard]] std::set<std::string> names() const {
    const auto [presets, failure] = store.all();
    EXPECT_FALSE(failure);
    std::set<std::string> found;
    for (const auto& [name, stored] : presets) found.insert(name);
    return found;
  }

  const std::set<std::string> before{"A", "B", "C"};
  const PresetStore store{UserDefaults::standard()};
};

TEST_F(PresetLock, held_for_about_as_long_as_is_waited_for_it_loses_no_preset) {
  // Half a second is waited for a lock.
  for (const auto duration : {100ms, 460ms, 490ms, 500ms, 505ms, 525ms, 545ms, 1500ms}) {
    const bool isSaved = savesDuringLock(duration);
    std::set<std::string> expected = before;
    if (isSaved) expected.insert("D");
    EXPECT_EQ(names(), expected) << duration.count() << " ms";
    EXPECT_TRUE(isSaved || duration > 400ms);
    EXPECT_FALSE(isSaved && duration > 1000ms);
    EXPECT_EQ(store.remove("D"), isSaved);
  }
}

}  // namespace
}  // namespace vorrin
