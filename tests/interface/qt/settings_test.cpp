#include <QApplication>
#include <QClipboard>
#include <QWheelEvent>

#include "qt_interface_test.h"

namespace vorrin {
namespace {

const std::string savedNotice = "Saved automatically · macros stopped · presets unchanged";

using QtSettings = QtInterfaceTest;

TEST_F(QtSettings, a_number_pasted_with_a_line_break_is_a_number) {
  QApplication::clipboard()->setText("0.75\r\n");
  click(app->fields[0]);
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(app->fields[0].text(), "0.75");
  EXPECT_EQ(stored("interval0"), DefaultsObject(0.75));
}

TEST_F(QtSettings, taking_an_edit_back_is_an_edit) {
  type(app->fields[0], "0.25");
  press(Qt::Key_X);
  ASSERT_FALSE(app->settingsValid);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(app->settingsValid);
  EXPECT_EQ(app->saveNotice.text(), savedNotice);
}

TEST_F(QtSettings, scrolling_over_a_pop_up_changes_nothing) {
  QWidget& popUp = widgetOf(app->output);
  const QPoint place = popUp.rect().center();
  QWheelEvent wheel(place, popUp.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&popUp, &wheel);
  EXPECT_EQ(app->output.indexOfSelectedItem(), 1);
  EXPECT_EQ(app->saveNotice.text(), "Settings save automatically.");
}

}  // namespace
}  // namespace vorrin
