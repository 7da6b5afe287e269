#include <QTest>

#include "interface_test.h"
#include "platform/fake/system/fake_system.h"
#include "platform/linux/widgets/label_widget.h"
#include "platform/linux/widgets/window_widget.h"

// The same tests run at one and at two pixels a point.

namespace vorrin {
namespace {

constexpr Size compact{580, 700};
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

class Layout : public InterfaceTest {
 protected:
  void layOut(Size size) {
    app->window.setContentSize(size);
    content().layoutSubtreeIfNeeded();
  }

  [[nodiscard]] View content() const { return app->window.contentView(); }

  void expectNothingClipped() {
    content().layoutSubtreeIfNeeded();
    const Rect room = content().bounds();
    for (const View& control : allControls()) {
      const Rect rect = control.boundsIn(content());
      EXPECT_GE(rect.x, 0) << control.description();
      EXPECT_GE(rect.y, 0) << control.description();
      EXPECT_LE(rect.maxX(), room.width) << control.description();
      EXPECT_LE(rect.maxY(), room.height) << control.description();
    }
  }
};

TEST_F(Layout, every_control_lies_inside_the_smallest_window) {
  layOut(compact);
  expectNothingClipped();
}

TEST_F(Layout, every_control_lies_inside_a_large_window) {
  layOut(expanded);
  EXPECT_EQ(content().bounds().width, expanded.width);
  EXPECT_EQ(content().bounds().height, expanded.height);
  expectNothingClipped();
}

TEST_F(Layout, the_status_of_two_lines_fits_the_smallest_window) {
  fake::system().trusted = false;
  launch();
  EXPECT_GT(app->status.bounds().height, app->saveNotice.bounds().height);
  expectNothingClipped();
}

TEST_F(Layout, the_longest_names_in_list_field_and_notice_fit_the_smallest_window) {
  fake::system().trusted = false;
  launch();
  for (const std::string& name : {widestLatinName, widestName}) {
    type(app->presetName, name);
    click(button("Save preset"));
    ASSERT_EQ(app->presetNotice.text(), "Saved “" + name + "”.");
    click(button("Load"));
    ASSERT_EQ(app->presetNotice.text(), "Loaded “" + name + "”. Both macros are OFF.");
    expectNothingClipped();
  }
}

TEST_F(Layout, a_long_preset_title_does_not_push_the_buttons_beside_it_out_of_the_card) {
  savePreset(widestLatinName, *app->currentPreset());
  content().layoutSubtreeIfNeeded();
  const Rect list = app->presetList.boundsIn(content());
  const Rect erase = button("Delete").boundsIn(content());
  EXPECT_LE(erase.maxX() - list.x, 500);
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), widestLatinName);
}

TEST_F(Layout, no_two_controls_overlap) {
  content().layoutSubtreeIfNeeded();
  const std::vector<View> controls = allControls();
  for (std::size_t i = 0; i < controls.size(); ++i) {
    for (std::size_t j = i + 1; j < controls.size(); ++j) {
      EXPECT_FALSE(overlap(controls[i].boundsIn(content()), controls[j].boundsIn(content())))
          << controls[i].description() << " and " << controls[j].description();
    }
  }
}

TEST_F(Layout, every_label_has_the_room_that_its_text_needs) {
  fake::system().trusted = false;
  launch();
  for (const View& control : allControls()) {
    const auto* label = widgetAs<LabelWidget>(control);
    if (label == nullptr) continue;
    EXPECT_GE(label->height(), label->heightForWidth(label->width())) << control.description();
  }
}

TEST_F(Layout, every_button_has_the_room_that_its_title_needs) {
  for (const View& control : allControls()) {
    const auto found = Button::from(control);
    if (!found) continue;
    const QWidget& widget = widgetOf(control);
    EXPECT_GE(widget.width(), widget.sizeHint().width()) << control.description();
    EXPECT_GE(widget.height(), widget.sizeHint().height()) << control.description();
  }
}

TEST_F(Layout, the_longest_state_fits_its_row) {
  click(app->buttons[1]);
  fake::setApplicationActive(true);
  ASSERT_EQ(app->states[1].text(), "PAUSED · app focused");
  content().layoutSubtreeIfNeeded();
  EXPECT_GE(widgetOf(app->states[1]).width(), widgetOf(app->states[1]).sizeHint().width());
  expectNothingClipped();
}

TEST_F(Layout, the_column_is_532_wide_and_centred_at_every_size) {
  for (const Size size : {compact, Size{811, 733}, expanded}) {
    layOut(size);
    const View root = content().subviews().front();
    const Rect column = root.boundsIn(content());
    EXPECT_EQ(column.width, 532);
    EXPECT_EQ(column.y, 24);
    EXPECT_NEAR(column.x + column.width / 2, size.width / 2, 1);
  }
}

TEST_F(Layout, the_rows_have_the_widths_of_their_cards_and_the_column) {
  layOut(compact);
  const Rect start = app->buttons[0].boundsIn(content());
  const Rect check = app->checks[0].boundsIn(content());
  EXPECT_EQ(check.x, 40);
  EXPECT_EQ(start.maxX(), 540);
  EXPECT_EQ(button("Full screen").boundsIn(content()).maxX(), 556);
  EXPECT_EQ(button("Stop all · Esc").boundsIn(content()).maxX(), 556);
  EXPECT_EQ(app->fields[0].bounds().width, 75);
  EXPECT_EQ(app->presetName.bounds().width, 220);
}

TEST_F(Layout, the_controls_of_a_row_are_centred_on_one_line) {
  layOut(compact);
  const auto middle = [this](const View& view) {
    const Rect rect = view.boundsIn(content());
    return rect.y + rect.height / 2;
  };
  EXPECT_NEAR(middle(app->checks[0]), middle(app->buttons[0]), 1);
  EXPECT_NEAR(middle(app->states[0]), middle(app->buttons[0]), 1);
  EXPECT_NEAR(middle(app->shortcuts[0]), middle(app->fields[0]), 1);
  EXPECT_NEAR(middle(app->presetList), middle(button("Load")), 1);
}

TEST_F(Layout, the_window_cannot_be_made_smaller_than_at_the_start) {
  widgetOf(app->window).resize(100, 100);
  content().layoutSubtreeIfNeeded();
  EXPECT_EQ(content().bounds().width, compact.width);
  EXPECT_EQ(content().bounds().height, compact.height);
}

TEST_F(Layout, full_screen_and_back_gives_the_window_its_size_again) {
  QWidget& window = widgetOf(app->window);
  const QRect before = window.geometry();
  click(button("Full screen"));
  ASSERT_TRUE(waitFor([&window] { return window.isFullScreen(); }));
  expectNothingClipped();
  click(button("Full screen"));
  ASSERT_TRUE(waitFor([&window] { return !window.isFullScreen(); }));
  EXPECT_TRUE(waitFor([&] { return window.geometry().size() == before.size(); }));
}

TEST_F(Layout, leaving_the_full_screen_gives_a_maximised_window_its_state_again) {
  QWidget& window = widgetOf(app->window);
  window.showMaximized();
  ASSERT_TRUE(waitFor([&window] { return window.isMaximized(); }));
  press(Qt::Key_F11);
  ASSERT_TRUE(waitFor([&window] { return window.isFullScreen(); }));
  press(Qt::Key_F11);
  EXPECT_TRUE(waitFor([&window] { return !window.isFullScreen() && window.isMaximized(); }));
}

TEST_F(Layout, a_picture_has_as_many_pixels_as_the_screen_shows) {
  layOut(compact);
  QImage picture;
  const std::string png = content().pngSnapshot();
  ASSERT_TRUE(picture.loadFromData(reinterpret_cast<const uchar*>(png.data()),
                                   static_cast<int>(png.size()), "PNG"));
  const qreal scale = widgetOf(app->window).devicePixelRatioF();
  EXPECT_EQ(picture.width(), compact.width * scale);
  EXPECT_EQ(picture.height(), compact.height * scale);
  EXPECT_EQ(picture.pixelColor(1, 1), QColor(Qt::black));
}

}  // namespace
}  // namespace vorrin
