#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <chrono>
#include <set>
#include <string>
#include <thread>

#include "platform/linux/foundation/file_descriptor.h"
#include "settings/preset_store.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using namespace std::chrono_literals;

const Preset preset{{0.05, 0.001}, {50, 48}, 1, {true, true}};

class PresetLock : public DefaultsSandbox {
 protected:
  PresetLock() {
    for (const char* name : {"A", "B", "C"}) EXPECT_TRUE(store.save(preset, name));
  }

  /// Saves D while another program holds the lock for so long; whether that is said to be stored.
  [[nodiscard]] bool savesDuringLock(std::chrono::milliseconds duration) const {
    FileDescriptor lock(::open(settings.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    EXPECT_EQ(::flock(lock.get(), LOCK_EX), 0);
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

  const PresetStore store{UserDefaults::standard()};
};

TEST_F(PresetLock, held_for_about_as_long_as_is_waited_for_it_loses_no_preset) {
  // Half a second is waited for a lock.
  for (const auto duration : {100ms, 460ms, 490ms, 500ms, 505ms, 525ms, 545ms, 1500ms}) {
    const bool isSaved = savesDuringLock(duration);
    const std::set<std::string> expected =
        isSaved ? std::set<std::string>{"A", "B", "C", "D"} : std::set<std::string>{"A", "B", "C"};
    EXPECT_EQ(names(), expected) << duration.count() << " ms";
    EXPECT_TRUE(isSaved || duration > 400ms);
    EXPECT_FALSE(isSaved && duration > 1000ms);
    EXPECT_EQ(store.remove("D"), isSaved);
  }
}

}  // namespace
}  // namespace vorrin
