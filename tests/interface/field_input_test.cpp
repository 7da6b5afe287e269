#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>

#include "interface_test.h"

// What users and other programs may put into a field.

namespace vorrin {
namespace {

class FieldInput : public InterfaceTest {
 protected:
  void paste(const TextField& field, const QString& text) {
    QApplication::clipboard()->setText(text);
    click(field);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_V, Qt::ControlModifier);
  }
};

TEST_F(FieldInput, control_characters_are_left_out) {
  QString all;
  for (char16_t character = 0; character < 0x20; ++character) all += QChar(character);
  all += QChar(0x7F);
  all += QChar(0x85);
  paste(app->presetName, "N" + all + "ight");
  EXPECT_EQ(app->presetName.text(), "Night");
}

TEST_F(FieldInput, line_breaks_are_left_out) {
  paste(app->presetName, "N\ni\r\ng" + QString(QChar::LineSeparator) + "h" +
                             QString(QChar::ParagraphSeparator) + "t\n");
  EXPECT_EQ(app->presetName.text(), "Night");
}

TEST_F(FieldInput, the_cursor_stays_behind_what_was_pasted) {
  type(app->presetName, "ab");
  press(Qt::Key_Left);
  QApplication::clipboard()->setText("1\n2\n");
  press(Qt::Key_V, Qt::ControlModifier);
  press(Qt::Key_X);
  EXPECT_EQ(app->presetName.text(), "a12xb");
}

TEST_F(FieldInput, ten_thousand_characters_change_no_layout_and_are_refused) {
  const std::string longText(10000, '7');
  const double width = app->presetName.bounds().width;
  paste(app->presetName, QString::fromStdString(longText));
  EXPECT_EQ(app->presetName.text(), longText);
  click(button("Save preset"));
  EXPECT_EQ(app->presetNotice.text(),
            "Enter a name (1–80 characters) and valid, distinct macro settings.");
  EXPECT_EQ(app->presetName.bounds().width, width);
  paste(app->fields[0], QString::fromStdString(longText));
  EXPECT_EQ(app->fields[0].text(), longText);
  EXPECT_FALSE(app->settingsValid);
}

TEST_F(FieldInput, text_from_right_to_left_is_kept_as_it_is) {
  const std::string hebrew = "לילה 12 טוב";
  paste(app->presetName, QString::fromStdString(hebrew));
  EXPECT_EQ(app->presetName.text(), hebrew);
  click(button("Save preset"));
  EXPECT_EQ(app->presetList.titleOfSelectedItem(), hebrew);
  EXPECT_EQ(app->presetNotice.text(), "Saved “" + hebrew + "”.");
}

TEST_F(FieldInput, marks_of_writing_direction_stay_in_a_name) {
  const std::string name = "a\u202Eb\u200F";
  paste(app->presetName, QString::fromStdString(name));
  EXPECT_EQ(app->presetName.text(), name);
}

TEST_F(FieldInput, half_a_character_is_harmless) {
  paste(app->presetName, QString("Night") + QChar(0xD83D));
  click(button("Save preset"));
  EXPECT_FALSE(app->presetNotice.text().empty());
}

TEST_F(FieldInput, text_dropped_into_a_field_is_an_edit) {
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
