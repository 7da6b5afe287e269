#include "bridge/program_engine.h"
#include "interface_test.h"
#include "ui/theme.h"

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

/// What the controls of the settings show.
std::vector<std::string> settingsShown(const App& app) {
  return {app.fields[0].text(),
          app.fields[1].text(),
          app.shortcuts[0].titleOfSelectedItem(),
          app.shortcuts[1].titleOfSelectedItem(),
          app.output.titleOfSelectedItem(),
          app.checks[0].isOn() ? "on" : "off",
          app.checks[1].isOn() ? "on" : "off"};
}

TEST_F(Launch, saved_settings_fill_the_controls_and_start_values_do_where_there_are_none) {
  EXPECT_THAT(settingsShown(*app),
              ElementsAre("0.05", "0.001", "Backtick `", "Tab", "1", "on", "on"));
  store({{"interval0", 2.0},
         {"interval1", 0.125},
         {"key0", std::int64_t{101}},
         {"key1", std::int64_t{97}},
         {"enabled0", false},
         {"enabled1", true},
         {"digit", std::int64_t{7}}});
  launch();
  EXPECT_THAT(settingsShown(*app), ElementsAre("2.0", "0.125", "F9", "F6", "7", "off", "on"));
  EXPECT_FALSE(app->buttons[0].isEnabled());
  EXPECT_TRUE(app->buttons[1].isEnabled());
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

TEST_F(Launch, the_window_is_black_and_labels_have_the_label_colour_but_for_the_headings) {
  EXPECT_EQ(app->window.backgroundColor(), Color::black());
  constexpr Color labelColor = Color::sRgb(0.55, 0.61, 0.57);
  EXPECT_EQ(label("Keyboard repeat").textColor(), labelColor);
  EXPECT_EQ(label("Shortcut").textColor(), labelColor);
  EXPECT_EQ(app->saveNotice.textColor(), labelColor);
  EXPECT_EQ(app->presetNotice.textColor(), labelColor);
  EXPECT_EQ(label("> VORRIN").textColor(), hackerGreen);
  EXPECT_EQ(label("NAMED PRESETS").textColor(), Color::sRgb(0.77, 0.82, 0.79));
}

}  // namespace
}  // namespace vorrin
