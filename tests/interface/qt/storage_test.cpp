#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <QTest>
#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "bridge/program_engine.h"
#include "presets_test.h"
#include "qt_driver.h"

namespace vorrin {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string savedNotice = "Saved automatically · macros stopped · presets unchanged";

/// The window while the place of its settings fails it.
class Storage : public PresetsTest {
 protected:
  const std::filesystem::path folder = home.path / ".config" / "vorrin";
  const std::filesystem::path file = folder / "org.vorrin.Vorrin.json";
  const std::filesystem::path kept = folder / "kept";

  /// Puts something in the place of the file that can neither be read nor replaced.
  void obstruct() const {
    std::filesystem::create_directories(folder);
    if (std::filesystem::exists(file)) std::filesystem::rename(file, kept);
    std::filesystem::create_directory(file);
  }

  void clear() const {
    std::filesystem::remove(file);
    if (std::filesystem::exists(kept)) std::filesystem::rename(kept, file);
  }
};

TEST_F(Storage, an_edit_that_cannot_be_stored_applies_and_says_why_until_one_can) {
  type(app->fields[0], "0.125");
  obstruct();
  type(app->fields[0], "0.25");
  EXPECT_EQ(app->saveNotice.text(),
            "Not saved: not a regular file. Settings apply until Vorrin quits.");
  EXPECT_EQ(engine.intervals[0], 0.25);
  EXPECT_TRUE(app->settingsValid);
  click(app->buttons[0]);
  EXPECT_TRUE(engine.running[0]);
  clear();
  EXPECT_EQ(stored("interval0"), DefaultsObject(0.125));
  choose(app->output, 3);
  EXPECT_EQ(app->saveNotice.text(), savedNotice);
  EXPECT_EQ(stored("interval0"), DefaultsObject(0.25));
}

TEST_F(Storage, settings_that_could_not_be_read_are_not_replaced_by_start_values) {
  type(app->fields[0], "0.125");
  choose(app->output, 9);
  savePreset("Night", preset());
  obstruct();
  launch();
  EXPECT_THAT(app->saveNotice.text(),
              StartsWith("Not saved: the stored settings could not be read (not a regular file)"));
  EXPECT_EQ(app->fields[0].text(), "0.05");
  clear();
  type(app->fields[1], "7");
  EXPECT_EQ(engine.intervals[1], 7);
  EXPECT_THAT(app->saveNotice.text(), StartsWith("Not saved: the stored settings could not be"));
  EXPECT_EQ(stored("interval0"), DefaultsObject(0.125));
  EXPECT_EQ(stored("digit"), DefaultsObject(std::int64_t{9}));
  launch();
  EXPECT_EQ(app->fields[0].text(), "0.125");
  EXPECT_EQ(list(), std::vector<std::string>{"Night"});
}

TEST_F(Storage, presets_that_cannot_be_read_are_not_said_to_be_none) {
  save("Night");
  obstruct();
  launch();
  EXPECT_EQ(list(), std::vector<std::string>{"Presets could not be read"});
  EXPECT_FALSE(app->presetList.isEnabled());
  for (const char* title : {"Load", "Rename", "Delete"}) {
    app->presetNotice.setText("");
    click(button(title));
    EXPECT_EQ(app->presetNotice.text(), "Could not read presets: not a regular file.") << title;
    EXPECT_FALSE(hasSheet());
  }
  save("Day");
  EXPECT_EQ(app->presetNotice.text(), "Could not read presets: not a regular file.");
  clear();
  save("Day");
  EXPECT_EQ(list(), (std::vector<std::string>{"Day", "Night"}));
}

TEST_F(Storage, a_renaming_that_cannot_be_stored_is_not_blamed_on_the_name) {
  save("Night");
  click(button("Rename"));
  type(nameInSheet(), "Day");
  obstruct();
  answer("Rename");
  EXPECT_EQ(app->presetNotice.text(), "Could not read presets: not a regular file.");
}

TEST_F(Storage, a_file_set_aside_is_told_in_the_window) {
  type(app->fields[0], "0.125");
  std::ofstream(file) << "no settings";
  launch();
  const std::string told =
      "The stored settings could not be understood. They were kept as "
      "“org.vorrin.Vorrin.json.damaged” in their folder.";
  EXPECT_EQ(app->saveNotice.text(), told);
  type(app->fields[0], "0.25");
  EXPECT_EQ(app->saveNotice.text(), savedNotice);
  std::ofstream(file) << "again";
  type(app->fields[0], "0.5");
  EXPECT_THAT(app->saveNotice.text(), HasSubstr("“org.vorrin.Vorrin.json.damaged-2”"));
  EXPECT_EQ(stored("interval0"), DefaultsObject(0.5));
}

TEST_F(Storage, loading_a_preset_is_one_commit) {
  savePreset("Night", other());
  const int watch = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  ASSERT_GE(::inotify_add_watch(watch, folder.c_str(), IN_MOVED_TO), 0);
  click(button("Load"));
  EXPECT_EQ(app->saveNotice.text(), savedNotice);
  EXPECT_EQ(stored("interval0"), DefaultsObject(2.0));
  EXPECT_EQ(stored("enabled0"), DefaultsObject(false));
  alignas(inotify_event) std::array<char, 4096> events{};
  const auto size = ::read(watch, events.data(), events.size());
  ASSERT_GT(size, 0);
  const auto* first = reinterpret_cast<const inotify_event*>(events.data());
  EXPECT_EQ(static_cast<std::size_t>(size), sizeof *first + first->len);
  ::close(watch);
}

using QtPresets = PresetsTest;

TEST_F(QtPresets, while_a_question_is_open_the_window_takes_no_input) {
  savePreset("Night", other());
  click(button("Delete"));
  click(app->buttons[0]);
  click(app->checks[0]);
  EXPECT_FALSE(engine.running[0]);
  EXPECT_TRUE(app->checks[0].isOn());
  answer("Cancel");
  click(app->buttons[0]);
  EXPECT_TRUE(engine.running[0]);
}

TEST_F(QtPresets, space_and_the_pads_enter_do_not_delete) {
  savePreset("Night", other());
  for (const Qt::Key key : {Qt::Key_Enter, Qt::Key_Space}) {
    click(button("Delete"));
    QTest::keyClick(widgetOf(app->window).windowHandle(), key);
    EXPECT_FALSE(hasSheet());
    EXPECT_EQ(app->presetStore().all().value.size(), 1U);
  }
}

}  // namespace
}  // namespace vorrin
