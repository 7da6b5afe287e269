#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QWheelEvent>

#include "qt_interface_test.h"

// What users and other programs may put into a field.

namespace vorrin {
namespace {

class QtFieldInput : public QtInterfaceTest {
 protected:
  void paste(const TextField& field, const QString& text) {
    QApplication::clipboard()->setText(text);
    click(field);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_V, Qt::ControlModifier);
  }
};

TEST_F(QtFieldInput, line_breaks_and_control_characters_are_left_out) {
  QString all;
  for (char16_t character = 0; character < 0x20; ++character) all += QChar(character);
  for (const char16_t character : {u'\x7F', u'\x85', u'\u2028', u'\u2029'}) all += QChar(character);
  paste(app->presetName, "N" + all + "ight\r\n");
  EXPECT_EQ(app->presetName.text(), "Night");
}

TEST_F(QtFieldInput, the_cursor_stays_behind_what_was_pasted) {
  type(app->presetName, "ab");
  press(Qt::Key_Left);
  QApplication::clipboard()->setText("1\n2\n");
  press(Qt::Key_V, Qt::ControlModifier);
  press(Qt::Key_X);
  EXPECT_EQ(app->presetName.text(), "a12xb");
}

TEST_F(QtFieldInput, half_a_character_is_harmless) {
  paste(app->presetName, QString("Night") + QChar(0xD83D));
  click(button("Save preset"));
  EXPECT_FALSE(app->presetNotice.text().empty());
}

TEST_F(QtFieldInput, text_dropped_into_a_field_is_an_edit) {
  QMimeData data;
  data.setText("2.5\n");
  QWidget& field = widgetOf(app->fields[0]);
  app->fields[0].setText("");
  QDragEnterEvent arrival(QPoint(4, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&field, &arrival);
  QDropEvent drop(QPointF(4, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&field, &drop);
  EXPECT_EQ(app->fields[0].text(), "2.5");
  EXPECT_EQ(stored("interval0"), DefaultsObject(2.5));
}

TEST_F(QtFieldInput, taking_an_edit_back_is_an_edit) {
  type(app->fields[0], "0.25");
  press(Qt::Key_X);
  ASSERT_FALSE(app->settingsValid);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(app->settingsValid);
}

TEST_F(QtFieldInput, scrolling_over_a_pop_up_changes_nothing) {
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
