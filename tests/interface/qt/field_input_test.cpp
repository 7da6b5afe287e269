#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>

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

TEST_F(QtFieldInput, control_characters_are_left_out) {
  QString all;
  for (char16_t character = 0; character < 0x20; ++character) all += QChar(character);
  all += QChar(0x7F);
  all += QChar(0x85);
  paste(app->presetName, "N" + all + "ight");
  EXPECT_EQ(app->presetName.text(), "Night");
}

TEST_F(QtFieldInput, line_breaks_are_left_out) {
  paste(app->presetName, "N\ni\r\ng" + QString(QChar::LineSeparator) + "h" +
                             QString(QChar::ParagraphSeparator) + "t\n");
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

}  // namespace
}  // namespace vorrin
