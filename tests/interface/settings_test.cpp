#include "bridge/program_engine.h"
#include "interface_test.h"
#include "ui/theme.h"

namespace vorrin {
namespace {

const std::string savedNotice = "Saved automatically · macros stopped · presets unchanged";
const std::string intervalNotice = "Not saved: intervals must be 0.001–3600 seconds.";
const std::string shortcutNotice = "Not saved: choose a different shortcut for each macro.";

using Settings = InterfaceTest;

TEST_F(Settings, a_valid_interval_is_stored_as_it_is_typed) {
  type(app->fields[0], "0.125");
  EXPECT_EQ(stored("interval0"), DefaultsObject(0.125));
  EXPECT_EQ(engine.intervals[0], 0.125);
  EXPECT_EQ(app->saveNotice.text(), savedNotice);
  EXPECT_EQ(app->fields[0].textColor(), hackerGreen);
}

TEST_F(Settings, an_invalid_interval_is_shown_and_never_stored) {
  type(app->fields[0], "0.125");
  type(app->fields[0], "abc");
  EXPECT_EQ(app->fields[0].text(), "abc");
  EXPECT_EQ(stored("interval0"), DefaultsObject(0.125));
  EXPECT_EQ(engine.intervals[0], 0.125);
  EXPECT_EQ(app->saveNotice.text(), intervalNotice);
  EXPECT_EQ(app->fields[0].textColor(), Color::systemOrange());
  EXPECT_EQ(app->fields[1].textColor(), hackerGreen);
}

TEST_F(Settings, an_invalid_interval_forbids_starting_until_it_is_mended) {
  type(app->fields[1], "0");
  EXPECT_FALSE(app->buttons[0].isEnabled());
  EXPECT_FALSE(app->buttons[1].isEnabled());
  click(app->buttons[0]);
  EXPECT_FALSE(engine.running[0]);
  type(app->fields[1], "0.5");
  EXPECT_EQ(app->saveNotice.text(), savedNotice);
  EXPECT_EQ(app->fields[1].textColor(), hackerGreen);
  click(app->buttons[0]);
  EXPECT_TRUE(engine.running[0]);
}

TEST_F(Settings, every_edit_stops_both_macros_also_one_that_is_refused) {
  for (const char* text : {"5", "x"}) {
    click(app->buttons[0]);
    click(app->buttons[1]);
    ASSERT_TRUE(engine.running[0] && engine.running[1]);
    click(app->fields[1]);
    enter(text);
    EXPECT_FALSE(engine.running[0]);
    EXPECT_FALSE(engine.running[1]);
    EXPECT_EQ(app->states[0].text(), "OFF");
  }
  EXPECT_FALSE(app->settingsValid);
}

TEST_F(Settings, a_shortcut_and_a_digit_chosen_are_stored) {
  choose(app->shortcuts[0], 3);
  EXPECT_EQ(app->shortcuts[0].titleOfSelectedItem(), "F7");
  EXPECT_EQ(stored("key0"), DefaultsObject(std::int64_t{98}));
  EXPECT_EQ(engine.keys[0], 98);
  EXPECT_EQ(app->saveNotice.text(), savedNotice);
  choose(app->output, 9);
  EXPECT_EQ(stored("digit"), DefaultsObject(std::int64_t{9}));
  EXPECT_EQ(engine.digit, 9);
}

TEST_F(Settings, equal_shortcuts_are_refused_until_they_differ) {
  choose(app->shortcuts[0], 1);
  EXPECT_EQ(app->saveNotice.text(), shortcutNotice);
  EXPECT_FALSE(app->buttons[0].isEnabled());
  EXPECT_EQ(engine.keys[0], 50);
  EXPECT_EQ(app->fields[0].textColor(), hackerGreen);
  choose(app->shortcuts[1], 0);
  EXPECT_EQ(app->saveNotice.text(), savedNotice);
  EXPECT_EQ(stored("key0"), DefaultsObject(std::int64_t{48}));
  EXPECT_EQ(stored("key1"), DefaultsObject(std::int64_t{50}));
}

TEST_F(Settings, equal_shortcuts_are_named_before_a_bad_interval) {
  type(app->fields[0], "abc");
  choose(app->shortcuts[0], 1);
  EXPECT_EQ(app->saveNotice.text(), shortcutNotice);
  EXPECT_EQ(app->fields[0].textColor(), Color::systemOrange());
}

TEST_F(Settings, a_check_box_enables_and_disables_its_macro) {
  click(app->checks[1]);
  EXPECT_EQ(stored("enabled1"), DefaultsObject(false));
  EXPECT_FALSE(app->buttons[1].isEnabled());
  EXPECT_TRUE(app->buttons[0].isEnabled());
  click(app->checks[1]);
  EXPECT_EQ(stored("enabled1"), DefaultsObject(true));
  EXPECT_TRUE(app->buttons[1].isEnabled());
}

}  // namespace
}  // namespace vorrin
