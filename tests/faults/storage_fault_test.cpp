#include <fcntl.h>
#include <sys/file.h>

#include <fstream>
#include <memory>

#include "fault_test.h"
#include "own_mounts.h"
#include "panel.h"
#include "platform/linux/foundation/file_descriptor.h"
#include "platform/user_defaults.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin::faults {
namespace {

// The place of the settings is hurt while the program uses it.
struct StorageFault : FaultTest {
  OwnMounts mounts;
  Panel panel{user};

  /// Has the user edit an interval and save a preset in the window.
  void editInWindow(std::string_view interval = "0.02", std::string_view preset = "late") {
    showVorrin();
    panel.enter(Control::keyboardInterval, interval);
    panel.enter(Control::presetName, preset);
    panel.push(Control::savePreset);
  }

  /// The macros work with what was typed, whether or not it could be stored.
  void expectMacrosWork() {
    showClient();
    runMacros();
    user.tap(keys::escape);
    expectSilence();
    expectUsableInput();
  }

  void expectStored(double interval, const std::string& preset) {
    ASSERT_TRUE(waitUntil([&] { return readStored().presets.contains(preset); }));
    EXPECT_EQ(readStored().settings.intervals[0], interval);
  }
};

TEST_F(StorageFault, on_a_full_disk_everything_works_and_the_last_state_that_fitted_stays) {
  std::filesystem::create_directories(settingsDirectory());
  // Limits on single files would hit the program's other files too, so there is no other way.
  ASSERT_TRUE(mounts.addSmallDisk(settingsDirectory(), std::size_t{64} * 1024))
      << "mounting is not permitted";
  start();
  const Stored before = readStored();
  {
    std::ofstream filler(settingsDirectory() / "filler", std::ios::binary);
    const std::string block(1024, 'x');
    while (filler.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
    }
  }
  editInWindow();
  expectMacrosWork();
  EXPECT_EQ(readStored(), before);
  std::filesystem::remove(settingsDirectory() / "filler");
  editInWindow("0.04");
  expectStored(0.04, "late");
  expectNoLeftovers();
}

TEST_F(StorageFault, in_a_read_only_directory_everything_works_with_what_was_stored) {
  start();
  const Stored before = readStored();
  ASSERT_TRUE(mounts.makeReadOnly(settingsDirectory())) << "mounting is not permitted";
  program.reset();
  startProgram();
  editInWindow();
  expectMacrosWork();
  windows.close(vorrinWindow());
  EXPECT_EQ(program->process().waitForEnd(), Ending{});
  EXPECT_EQ(readStored(), before);
}

TEST_F(StorageFault, while_another_process_holds_the_lock_everything_works_and_is_stored_later) {
  start();
  const Stored before = readStored();
  vorrin::FileDescriptor other(
      ::open(settingsDirectory().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(::flock(other.get(), LOCK_EX), 0);
  editInWindow();
  expectMacrosWork();
  EXPECT_EQ(readStored(), before);
  other = vorrin::FileDescriptor();
  editInWindow("0.04", "later");
  expectStored(0.04, "later");
}

TEST_F(StorageFault, a_file_removed_or_damaged_under_the_program_is_made_again) {
  start();
  std::filesystem::remove_all(settingsDirectory());
  editInWindow();
  expectStored(0.02, "late");
  expectNoLeftovers();
  std::ofstream(settingsDirectory() / "org.vorrin.Vorrin.json") << std::string(8192, 'x');
  editInWindow("0.04", "later");
  expectStored(0.04, "later");
  EXPECT_EQ(contentOf(settingsDirectory() / "org.vorrin.Vorrin.json.damaged"),
            std::string(8192, 'x'));
  expectMacrosWork();
}

}  // namespace
}  // namespace vorrin::faults
