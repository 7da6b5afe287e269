#include <sqlite3.h>
#include <sys/stat.h>

#include <fstream>
#include <memory>

#include "fault_test.h"
#include "own_mounts.h"
#include "panel.h"
#include "platform/user_defaults.h"
#include "settings/settings_persistence.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin::faults {
namespace {

// The place of the settings is hurt while the program uses it.
struct StorageFault : FaultTest {
  OwnMounts mounts;
  Panel panel{user};

  [[nodiscard]] std::filesystem::path settingsFile() const {
    return settingsDirectory() / "org.vorrin.Vorrin.sqlite3";
  }

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

  void expectEnding() {
    windows.close(vorrinWindow());
    EXPECT_EQ(program->process().waitForEnd(), Ending{});
  }
};

TEST_F(StorageFault, on_a_full_disk_everything_works_and_the_last_state_that_fitted_stays) {
  std::filesystem::create_directories(settingsDirectory());
  // Limits on single files would hit the program's other files too, so there is no other way.
  ASSERT_TRUE(mounts.addSmallDisk(settingsDirectory(), std::size_t{256} * 1024))
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
  ASSERT_TRUE(waitUntil([] { return readStored().presets.contains("late"); }));
  EXPECT_EQ(readStored().settings.intervals[0], 0.04);
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
  EXPECT_EQ(readStored(), before);
  expectEnding();
  EXPECT_EQ(readStored(), before);
}

TEST_F(StorageFault, with_a_file_in_the_place_of_the_directory_everything_works_with_start_values) {
  std::filesystem::create_directories(settingsDirectory().parent_path());
  std::ofstream(settingsDirectory()) << "mine";
  settings = stored();
  startProgram();
  client = std::make_unique<Client>(desktop.display());
  showClient();
  editInWindow();
  settings.digit = 1;
  expectMacrosWork();
  expectEnding();
  EXPECT_TRUE(std::filesystem::is_regular_file(settingsDirectory()));
}

TEST_F(StorageFault, while_another_process_locks_the_file_everything_works_and_is_stored_later) {
  start();
  const Stored before = readStored();
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(settingsFile().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  editInWindow();
  expectMacrosWork();
  ASSERT_EQ(sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(other);
  EXPECT_EQ(readStored().presets, before.presets);
  editInWindow("0.04", "later");
  ASSERT_TRUE(waitUntil([] { return readStored().presets.contains("later"); }));
  EXPECT_EQ(readStored().settings.intervals[0], 0.04);
}

TEST_F(StorageFault, a_file_removed_under_the_program_is_made_again) {
  start();
  std::filesystem::remove_all(settingsDirectory());
  editInWindow();
  ASSERT_TRUE(waitUntil([] { return readStored().presets.contains("late"); }));
  EXPECT_EQ(readStored().settings.intervals[0], 0.02);
  EXPECT_EQ(readStored().settings.keys, settings.keys);
  expectNoLeftovers();
}

TEST_F(StorageFault, a_file_damaged_under_the_program_is_set_aside_and_made_again) {
  start();
  std::ofstream(settingsFile(), std::ios::binary) << std::string(8192, 'x');
  editInWindow();
  ASSERT_TRUE(waitUntil([] { return readStored().presets.contains("late"); }));
  EXPECT_EQ(readStored().settings.intervals[0], 0.02);
  EXPECT_EQ(namesIn(settingsDirectory()).size(), 2U);
  expectMacrosWork();
}

TEST_F(StorageFault, settings_are_the_users_alone_whatever_mask_the_program_is_started_with) {
  const mode_t mask = ::umask(0);
  startProgram();
  ::umask(mask);
  editInWindow();
  ASSERT_TRUE(waitUntil([] { return readStored().presets.contains("late"); }));
  EXPECT_EQ(permissionsOf(settingsDirectory()), 0700U);
  EXPECT_EQ(permissionsOf(settingsFile()), 0600U);
}

}  // namespace
}  // namespace vorrin::faults
