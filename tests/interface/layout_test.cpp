#include "layout_test.h"

#include "platform/fake/system/fake_system.h"

// The same tests run at one and at two pixels a point.

namespace vorrin {
namespace {

constexpr Size expanded{1440, 900};

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

const std::string widestLatinName = repeated("W", 80);
const std::string widestName = repeated("漢", 80);

bool overlap(const Rect& left, const Rect& right) {
  return left.x < right.maxX() && right.x < left.maxX() && left.y < right.maxY() &&
         right.y < left.maxY();
}

const std::string longNotice =
    "The stored settings could not be understood. They were kept as "
    "“org.vorrin.Vorrin.json.damaged” in their folder.";

TEST_F(Layout, the_longest_names_in_list_field_and_notice_fit_the_smallest_window) {
  fake::system().trusted = false;
  launch();
  for (const std::string& name : {widestLatinName, widestName}) {
    type(app->presetName, name);
    click(button("Save preset"));
    ASSERT_EQ(app->presetNotice.text(), "Saved “" + name + "”.");
    click(button("Load"));
    ASSERT_EQ(app->presetNotice.text(), "Loaded “" + name + "”. Both macros are OFF.");
    // As long as those about a storage that fails.
    app->saveNotice.setText(longNotice);
    expectNothingClipped();
  }
}

TEST_F(Layout, buttons_stay_where_they_are_when_macros_start_and_presets_come) {
  const auto places = [this] {
    content().layoutSubtreeIfNeeded();
    std::vector<double> edges;
    for (const View& view : {View(app->buttons[1]), View(button("Load")), View(button("Delete"))}) {
      edges.insert(edges.end(), {place(view).x, place(view).maxX()});
    }
    return edges;
  };
  const auto before = places();
  click(app->buttons[1]);
  ASSERT_EQ(app->buttons[1].title(), "Stop");
  savePreset(widestLatinName, *app->currentPreset());
  EXPECT_EQ(places(), before);
}

TEST_F(Layout, a_notice_that_wraps_pushes_down_what_is_below_and_lets_it_rise_again) {
  const auto top = [this] {
    content().layoutSubtreeIfNeeded();
    return place(app->status).y;
  };
  const double before = top();
  app->saveNotice.setText(longNotice);
  EXPECT_GT(top(), before);
  app->saveNotice.setText("Settings save automatically.");
  EXPECT_EQ(top(), before);
}

TEST_F(Layout, no_two_controls_overlap) {
  content().layoutSubtreeIfNeeded();
  const std::vector<View> controls = allControls();
  for (std::size_t i = 0; i < controls.size(); ++i) {
    for (std::size_t j = i + 1; j < controls.size(); ++j) {
      EXPECT_FALSE(overlap(place(controls[i]), place(controls[j])))
          << controls[i].description() << " and " << controls[j].description();
    }
  }
}

TEST_F(Layout, the_column_is_532_wide_and_centred_and_holds_every_control_at_every_size) {
  for (const Size size : {compact, Size{811, 733}, expanded}) {
    layOut(size);
    expectNothingClipped();
    const View root = content().subviews().front();
    const Rect column = place(root);
    EXPECT_EQ(column.width, 532);
    EXPECT_EQ(column.y, 24);
    EXPECT_NEAR(column.x + column.width / 2, size.width / 2, 1);
  }
}

TEST_F(Layout, the_rows_have_the_widths_of_their_cards_and_the_column) {
  layOut(compact);
  const Rect start = place(app->buttons[0]);
  const Rect check = place(app->checks[0]);
  EXPECT_EQ(check.x, 40);
  EXPECT_EQ(start.maxX(), 540);
  EXPECT_EQ(place(button("Full screen")).maxX(), 556);
  EXPECT_EQ(place(button("Stop all · Esc")).maxX(), 556);
  EXPECT_EQ(place(app->fields[0]).width, 75);
  EXPECT_EQ(place(app->presetName).width, 220);
}

TEST_F(Layout, the_controls_of_a_row_are_centred_on_one_line) {
  layOut(compact);
  const auto middle = [this](const View& view) {
    const Rect rect = place(view);
    return rect.y + rect.height / 2;
  };
  EXPECT_NEAR(middle(app->checks[0]), middle(app->buttons[0]), 1);
  EXPECT_NEAR(middle(app->states[0]), middle(app->buttons[0]), 1);
  EXPECT_NEAR(middle(app->shortcuts[0]), middle(app->fields[0]), 1);
  EXPECT_NEAR(middle(app->presetList), middle(button("Load")), 1);
}

}  // namespace
}  // namespace vorrin
