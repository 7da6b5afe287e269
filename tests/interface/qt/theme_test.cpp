#include <QImage>

#include "platform/fake/system/fake_system.h"
#include "qt_interface_test.h"

namespace vorrin {
namespace {

class QtTheme : public QtInterfaceTest {
 protected:
  static QColor pixel(const View& view, int x, int y) {
    const QImage picture = widgetOf(view).grab().toImage();
    const qreal scale = picture.devicePixelRatio();
    return picture.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
  }
};

QColor gray(double white) {
  return QColor::fromRgbF(static_cast<float>(white), static_cast<float>(white),
                          static_cast<float>(white));
}

TEST_F(QtTheme,
       the_window_is_black_with_fields_near_black_and_cards_a_little_lighter_with_an_edge) {
  const View content = app->window.contentView();
  for (const int y : {2, 203}) EXPECT_EQ(pixel(content, 300, y), QColor(Qt::black)) << y;
  EXPECT_EQ(pixel(content, 300, 104).rgb(), gray(0.045).rgb());
  EXPECT_EQ(pixel(content, 300, 98).rgb(), gray(0.13).rgb());
  for (const TextField& field : app->fields) {
    EXPECT_EQ(pixel(field, 68, 11).rgb(), gray(0.065).rgb());
  }
}

TEST_F(QtTheme, only_stop_all_has_a_green_title) {
  const auto title = [this](const std::string& text) {
    return widgetOf(button(text)).palette().color(QPalette::Active, QPalette::ButtonText);
  };
  EXPECT_EQ(title("Stop all · Esc"), QColor::fromRgbF(0.25F, 0.9F, 0.48F));
  EXPECT_EQ(title("Load"), QColor::fromRgbF(0.77F, 0.82F, 0.79F));
  EXPECT_EQ(title("Full screen"), QColor::fromRgbF(0.77F, 0.82F, 0.79F));
}

TEST_F(QtTheme, texts_have_their_sizes_in_points_and_their_weights) {
  const auto size = [](const View& view) { return widgetOf(view).font().pixelSize(); };
  EXPECT_EQ(size(label("> VORRIN")), 21);
  EXPECT_EQ(widgetOf(label("> VORRIN")).font().weight(), QFont::DemiBold);
  EXPECT_EQ(size(label("Keyboard repeat")), 15);
  EXPECT_EQ(widgetOf(label("Keyboard repeat")).font().weight(), QFont::DemiBold);
  EXPECT_EQ(size(app->states[0]), 15);
  EXPECT_EQ(size(label("Shortcut")), 11);
  EXPECT_EQ(size(label("NAMED PRESETS")), 11);
  EXPECT_EQ(widgetOf(label("NAMED PRESETS")).font().weight(), QFont::DemiBold);
  EXPECT_EQ(size(app->presetNotice), 12);
  EXPECT_EQ(size(app->fields[0]), 12);
  EXPECT_EQ(size(button("Load")), 12);
  EXPECT_EQ(size(app->checks[0]), 13);
}

TEST_F(QtTheme, a_disabled_button_is_dimmer_but_not_gone) {
  const auto brightness = [](const Button& shown) {
    const QImage picture = widgetOf(shown).grab().toImage();
    int brightest = 0;
    for (int y = 6; y < picture.height() - 6; ++y) {
      for (int x = 6; x < picture.width() - 6; ++x) {
        brightest = std::max(brightest, picture.pixelColor(x, y).lightness());
      }
    }
    return brightest;
  };
  const int enabled = brightness(app->buttons[0]);
  fake::system().trusted = false;
  app->refresh();
  const int disabled = brightness(app->buttons[0]);
  EXPECT_LT(disabled, enabled * 2 / 3);
  EXPECT_GT(disabled, 70);
}

TEST_F(QtTheme, the_control_with_the_keyboard_has_a_green_ring) {
  const QColor before = pixel(button("Full screen"), 50, 1);
  press(Qt::Key_Tab);
  ASSERT_TRUE(widgetOf(button("Full screen")).hasFocus());
  const QColor ring = pixel(button("Full screen"), 50, 1);
  EXPECT_NE(ring, before);
  EXPECT_GT(ring.green(), 150);
  EXPECT_LT(ring.red(), 100);
}

TEST_F(QtTheme, a_button_that_was_clicked_has_no_ring) {
  click(button("Load"));
  ASSERT_TRUE(widgetOf(button("Load")).hasFocus());
  EXPECT_LT(pixel(button("Load"), 25, 1).green(), 150);
}

}  // namespace
}  // namespace vorrin
