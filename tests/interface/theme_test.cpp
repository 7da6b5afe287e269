#include "ui/theme.h"

#include "interface_test.h"

namespace vorrin {
namespace {

constexpr Color labelText = Color::sRgb(0.55, 0.61, 0.57);

using Theme = InterfaceTest;

TEST_F(Theme, interval_texts_are_green) {
  for (const TextField& field : app->fields) EXPECT_EQ(field.textColor(), hackerGreen);
}

TEST_F(Theme, the_window_is_black) {
  EXPECT_EQ(app->window.backgroundColor(), Color::black());
}

TEST_F(Theme, labels_have_the_label_colour_but_for_the_headings) {
  EXPECT_EQ(label("Keyboard repeat").textColor(), labelText);
  EXPECT_EQ(label("Shortcut").textColor(), labelText);
  EXPECT_EQ(app->saveNotice.textColor(), labelText);
  EXPECT_EQ(app->presetNotice.textColor(), labelText);
  EXPECT_EQ(label("> VORRIN").textColor(), hackerGreen);
  EXPECT_EQ(label("NAMED PRESETS").textColor(), Color::sRgb(0.77, 0.82, 0.79));
}

TEST_F(Theme, applying_it_twice_changes_nothing) {
  app->theme(app->window.contentView());
  const std::string title = app->checks[0].title();
  const std::string once = app->window.contentView().pngSnapshot();
  app->theme(app->window.contentView());
  EXPECT_EQ(app->window.contentView().pngSnapshot(), once);
  EXPECT_EQ(app->checks[0].title(), title);
}

}  // namespace
}  // namespace vorrin
