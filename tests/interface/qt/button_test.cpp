#include "platform/button.h"

#include <gtest/gtest.h>

#include <QAbstractButton>

#include "qt_driver.h"

namespace vorrin {
namespace {

TEST(QtButton, an_ampersand_in_a_title_makes_no_key_of_the_letter_after_it) {
  EXPECT_TRUE(widgetOf<QAbstractButton>(Button::push("Save & load", {})).shortcut().isEmpty());
}

TEST(QtButton, an_attributed_title_brings_its_font_and_colour) {
  const Button check = Button::checkbox("", {});
  check.setAttributedTitle("Enable", {13}, Color::sRgb(1, 0, 0));
  EXPECT_EQ(check.title(), "Enable");
  EXPECT_TRUE(check.hasFont());
  EXPECT_EQ(widgetOf(check).palette().color(QPalette::WindowText), QColor(Qt::red));
}

}  // namespace
}  // namespace vorrin
