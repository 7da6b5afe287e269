#include "bridge/program_engine.h"
#include "interface_test.h"
#include "platform/fake/system/fake_system.h"

namespace vorrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Launch = InterfaceTest;

std::vector<std::string> labelTexts(const std::vector<View>& views) {
  std::vector<std::string> texts;
  for (const View& view : views) {
    const auto field = TextField::from(view);
    if (field && !field->isEditable()) texts.push_back(field->text());
  }
  return texts;
}

TEST_F(Launch, the_window_says_these_texts_from_top_to_bottom) {
  EXPECT_THAT(
      labelTexts(allViews()),
      ElementsAre("> VORRIN", "Toggle once to repeat. Escape always stops both macros.",
                  "Keyboard repeat", "OFF", "Shortcut", "Every", "seconds", "Left mouse click",
                  "OFF", "Shortcut", "Every", "seconds", "Keyboard output",
                  "Paused while editing here. Mouse clicks follow your pointer.\n"
                  "0.001s is best effort; actual speed varies.",
                  "Settings save automatically.", "NAMED PRESETS", "",
                  "Connected · settings persist · starts OFF on every launch"));
}

TEST_F(Launch, the_window_has_these_buttons) {
  std::vector<std::string> titles;
  for (const View& view : allViews()) {
    const auto found = Button::from(view);
    if (found && found->kind() == ButtonKind::push) titles.push_back(found->title());
  }
  EXPECT_THAT(titles,
              ElementsAre("Full screen", "Start", "Start", "Stop all · Esc", "Save preset", "Load",
                          "Rename", "Delete", "Open Accessibility Settings", "Retry connection"));
}

TEST_F(Launch, both_macros_are_off) {
  for (const int macro : {0, 1}) {
    const auto index = static_cast<std::size_t>(macro);
    EXPECT_FALSE(engine.running[macro]);
    EXPECT_EQ(app->states[index].text(), "OFF");
    EXPECT_EQ(app->buttons[index].title(), "Start");
    EXPECT_TRUE(app->buttons[index].isEnabled());
  }
}

TEST_F(Launch, an_empty_domain_gives_the_start_values) {
  EXPECT_EQ(app->fields[0].text(), "0.05");
  EXPECT_EQ(app->fields[1].text(), "0.001");
  EXPECT_EQ(app->shortcuts[0].titleOfSelectedItem(), "Backtick `");
  EXPECT_EQ(app->shortcuts[1].titleOfSelectedItem(), "Tab");
  EXPECT_EQ(app->output.titleOfSelectedItem(), "1");
  EXPECT_TRUE(app->checks[0].isOn());
  EXPECT_TRUE(app->checks[1].isOn());
}

TEST_F(Launch, saved_settings_fill_the_controls) {
  store({{"interval0", 2.0},
         {"interval1", 0.125},
         {"key0", std::int64_t{101}},
         {"key1", std::int64_t{97}},
         {"enabled0", false},
         {"enabled1", true},
         {"digit", std::int64_t{7}}});
  launch();
  EXPECT_EQ(app->fields[0].text(), "2.0");
  EXPECT_EQ(app->fields[1].text(), "0.125");
  EXPECT_EQ(app->shortcuts[0].titleOfSelectedItem(), "F9");
  EXPECT_EQ(app->shortcuts[1].titleOfSelectedItem(), "F6");
  EXPECT_EQ(app->output.titleOfSelectedItem(), "7");
  EXPECT_FALSE(app->checks[0].isOn());
  EXPECT_TRUE(app->checks[1].isOn());
  EXPECT_FALSE(app->buttons[0].isEnabled());
  EXPECT_TRUE(app->buttons[1].isEnabled());
}

TEST_F(Launch, unusable_saved_settings_are_replaced_without_a_word) {
  store({{"interval0", std::string("0.2")},
         {"interval1", 5000.0},
         {"key0", std::int64_t{53}},
         {"key1", std::int64_t{48}},
         {"digit", std::int64_t{42}}});
  launch();
  EXPECT_EQ(app->fields[0].text(), "0.05");
  EXPECT_EQ(app->fields[1].text(), "0.001");
  EXPECT_EQ(app->shortcuts[0].titleOfSelectedItem(), "Backtick `");
  EXPECT_EQ(app->output.titleOfSelectedItem(), "9");
  EXPECT_EQ(app->saveNotice.text(), "Settings save automatically.");
  EXPECT_EQ(stored("interval1"), DefaultsObject(5000.0));
}

TEST_F(Launch, equal_saved_shortcuts_become_the_start_values) {
  store({{"key0", std::int64_t{97}}, {"key1", std::int64_t{97}}, {"digit", std::int64_t{-3}}});
  launch();
  EXPECT_EQ(app->shortcuts[0].titleOfSelectedItem(), "Backtick `");
  EXPECT_EQ(app->shortcuts[1].titleOfSelectedItem(), "Tab");
  EXPECT_EQ(app->output.titleOfSelectedItem(), "0");
}

TEST_F(Launch, the_keyboard_listener_is_connected_before_the_window_is_shown) {
  EXPECT_EQ(fake::system().tapMasks.size(), 1U);
  EXPECT_TRUE(fake::tapIsListening());
  EXPECT_TRUE(driver::isVisible(app->window));
}

TEST_F(Launch, every_control_that_is_worked_has_a_name_for_screen_readers) {
  for (const View& view : allControls()) {
    const auto field = TextField::from(view);
    if (field && !field->isEditable()) continue;
    EXPECT_NE(driver::spokenName(view), "") << view.description();
  }
}

TEST_F(Launch, the_check_boxes_are_named_after_their_macros) {
  EXPECT_EQ(driver::spokenName(app->checks[0]), "Enable keyboard repeat");
  EXPECT_EQ(driver::spokenName(app->checks[1]), "Enable left mouse click");
  EXPECT_THAT(app->checks[0].title(), IsEmpty());
}

}  // namespace
}  // namespace vorrin
