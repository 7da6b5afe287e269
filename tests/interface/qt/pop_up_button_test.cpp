#include "platform/pop_up_button.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QScrollBar>
#include <QTest>
#include <vector>

#include "qt_driver.h"

namespace vorrin {
namespace {

TEST(QtPopUpButton, it_is_as_wide_as_its_widest_title_whichever_is_selected) {
  const PopUpButton made = PopUpButton::make({});
  made.addItems(std::vector<std::string>{"a", "a much longer title"});
  const int before = widgetOf(made).sizeHint().width();
  made.selectItem(1);
  EXPECT_EQ(widgetOf(made).sizeHint().width(), before);
}

TEST(QtPopUpButton, typing_finds_a_title_and_performs_the_action) {
  std::vector<std::string> chosen;
  PopUpButton made;
  made = PopUpButton::make({"choose", [&made, &chosen](const Button&) {
                              chosen.push_back(made.titleOfSelectedItem());
                            }});
  made.addItems(std::vector<std::string>{"a", "farm", "game"});
  QTest::keyClicks(&widgetOf(made), "g");
  EXPECT_EQ(chosen, std::vector<std::string>{"game"});
}

/// How many pixels of the right half show the green of marks.
int greenPixels(const QImage& picture) {
  int count = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = picture.width() / 2; x < picture.width(); ++x) {
      const QColor color = picture.pixelColor(x, y);
      count += color.green() > 150 && color.red() < 120 && color.blue() < 160 ? 1 : 0;
    }
  }
  return count;
}

// A pop-up on the screen whose second item is selected.
class QtPopUpMenu : public testing::Test {
 protected:
  ~QtPopUpMenu() override { popUp_.hidePopup(); }

  QWidget& open() {
    popUp_.showPopup();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(QApplication::activePopupWidget()));
    return *QApplication::activePopupWidget();
  }

  [[nodiscard]] QImage row(int index) const {
    QAbstractItemView& list = *popUp_.view();
    return list.viewport()->grab(list.visualRect(list.model()->index(index, 0))).toImage();
  }

  void fill(int count) {
    for (int i = 0; i < count; ++i) made_.addItems(std::vector{std::to_string(i)});
    made_.selectItem(1);
    popUp_.resize(popUp_.sizeHint());
    popUp_.show();
  }

  PopUpButton made_ = PopUpButton::make({});
  QComboBox& popUp_ = widgetOf<QComboBox>(made_);
};

TEST_F(QtPopUpMenu, is_as_wide_as_the_control_with_room_around_its_items_and_round_corners) {
  fill(6);
  const QWidget& menu = open();
  EXPECT_EQ(menu.width(), popUp_.width());
  EXPECT_FALSE(popUp_.view()->verticalScrollBar()->isVisible());
  const QRect items(popUp_.view()->viewport()->mapTo(&menu, QPoint(0, 0)),
                    popUp_.view()->viewport()->size());
  EXPECT_GE(items.left(), 4);
  EXPECT_GE(items.top(), 4);
  EXPECT_LE(items.bottom(), menu.height() - 5);
  for (const QPoint corner : {menu.rect().topLeft(), menu.rect().bottomRight()}) {
    EXPECT_FALSE(menu.mask().contains(corner));
    EXPECT_TRUE(menu.mask().contains((corner * 9 + menu.rect().center()) / 10));
  }
}

TEST_F(QtPopUpMenu, marks_the_current_item_while_the_pointer_is_at_another) {
  fill(6);
  open();
  QTest::mouseMove(popUp_.view()->viewport(), QPoint(20, 5));
  ASSERT_TRUE(QTest::qWaitFor([this] { return popUp_.view()->currentIndex().row() == 0; }));
  EXPECT_GT(greenPixels(row(1)), 5);
  EXPECT_EQ(greenPixels(row(0)), 0);
}

TEST_F(QtPopUpMenu, shows_the_widest_title_whole) {
  const std::string widest = "Backtick `";
  made_.addItems(std::vector{widest});
  fill(2);
  open();
  const QImage shown = row(0);
  const QRect title(0, 0,
                    popUp_.fontMetrics().horizontalAdvance(QString::fromStdString(widest)) + 6,
                    shown.height());
  popUp_.hidePopup();
  made_.addItems(std::vector{widest + " and more"});
  popUp_.resize(popUp_.sizeHint());
  open();
  EXPECT_EQ(row(0).copy(title), shown.copy(title));
}

TEST_F(QtPopUpMenu, that_is_long_has_a_slim_bar) {
  fill(40);
  open();
  EXPECT_TRUE(popUp_.view()->verticalScrollBar()->isVisible());
  EXPECT_LE(popUp_.view()->verticalScrollBar()->width(), 10);
}

TEST_F(QtPopUpMenu, leaves_the_control_unlit_when_it_closes_with_the_pointer_elsewhere) {
  fill(6);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&popUp_));
  const QPoint elsewhere = popUp_.mapToGlobal(popUp_.rect().bottomRight() + QPoint(200, 200));
  QCursor::setPos(elsewhere);
  const QImage unlit = popUp_.grab().toImage();
  QCursor::setPos(popUp_.mapToGlobal(popUp_.rect().center()));
  ASSERT_TRUE(QTest::qWaitFor([&] { return popUp_.grab().toImage() != unlit; }));
  open();
  QCursor::setPos(elsewhere);
  popUp_.hidePopup();
  EXPECT_EQ(popUp_.grab().toImage(), unlit);
}

}  // namespace
}  // namespace vorrin
