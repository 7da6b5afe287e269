#include "platform/text_field.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QStringEncoder>
#include <QtEndian>

#include "platform/fatal_error.h"
#include "platform/linux/widgets/label_widget.h"
#include "qt_driver.h"

namespace vorrin {
namespace {

LabelWidget& wrapping(const TextField& label) {
  auto& widget = widgetOf<LabelWidget>(label);
  widget.setWraps(true);
  return widget;
}

TEST(QtTextField, it_gives_back_what_it_shows_of_bytes_that_are_no_text_and_control_characters) {
  EXPECT_EQ(TextField::field("\xFF").text(), "\uFFFD");
  EXPECT_EQ(TextField::wrappingLabel("\xC3").text(), "\uFFFD");
  EXPECT_EQ(TextField::field(std::string("a\0b\nc", 5)).text(), "abc");
}

TEST(QtTextField, a_text_put_into_a_field_shows_from_its_beginning) {
  const TextField field = TextField::field(std::string(100, 'a'));
  EXPECT_EQ(widgetOf<QLineEdit>(field).cursorPosition(), 0);
  field.setText(std::string(100, 'b'));
  EXPECT_EQ(widgetOf<QLineEdit>(field).cursorPosition(), 0);
}

TEST(QtTextField, a_label_shows_other_control_characters_as_blanks) {
  const TextField controls = TextField::wrappingLabel("a\tb\vc");
  const TextField blanks = TextField::wrappingLabel("a b c");
  EXPECT_EQ(widgetOf(controls).grab().toImage(), widgetOf(blanks).grab().toImage());
}

TEST(QtTextField, a_label_keeps_its_line_breaks) {
  const TextField label = TextField::wrappingLabel("one\ntwo");
  EXPECT_EQ(label.text(), "one\ntwo");
  const auto& widget = wrapping(label);
  EXPECT_EQ(widget.heightForWidth(500),
            2 * wrapping(TextField::wrappingLabel("x")).heightForWidth(500));
}

TEST(QtTextField, a_label_wraps_at_words) {
  const TextField text = TextField::wrappingLabel("some words to wrap at");
  const auto& label = wrapping(text);
  const int line = label.heightForWidth(1000);
  EXPECT_EQ(label.heightForWidth(label.sizeHint().width()), line);
  EXPECT_EQ(label.heightForWidth(label.sizeHint().width() * 2 / 3), 2 * line);
}

TEST(QtTextField, a_label_wraps_inside_a_word_that_is_longer_than_a_line) {
  const TextField text = TextField::wrappingLabel(std::string(100, 'w'));
  const auto& label = wrapping(text);
  EXPECT_GE(label.heightForWidth(label.sizeHint().width() / 3), 3 * label.heightForWidth(100000));
  EXPECT_EQ(label.minimumSizeHint().width(), 0);
}

TEST(QtTextField, a_label_shows_no_more_than_its_lines) {
  const TextField text = TextField::wrappingLabel("1\n2\n3\n4");
  text.setMaximumNumberOfLines(2);
  const auto& label = wrapping(text);
  EXPECT_EQ(label.heightForWidth(100),
            2 * wrapping(TextField::wrappingLabel("1")).heightForWidth(9));
  EXPECT_EQ(text.text(), "1\n2\n3\n4");
}

TEST(QtTextField, a_label_shortens_long_words_in_their_middles_rather_than_lose_its_end) {
  const auto loaded = [](const std::string& name) {
    TextField text = TextField::wrappingLabel("Loaded “" + name + "”. Both macros are OFF.");
    text.setMaximumNumberOfLines(2);
    return text;
  };
  const std::string half(39, 'W');
  for (const std::string& name : {std::string(80, 'W'), half + " " + half}) {
    const TextField text = loaded(name);
    EXPECT_EQ(text.text(), "Loaded “" + name + "”. Both macros are OFF.");
    auto& label = wrapping(text);
    label.resize(532, label.heightForWidth(532));
    const QString shown = label.fittedText(532);
    EXPECT_TRUE(shown.startsWith("Loaded “W")) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith("W”. Both macros are OFF.")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("W…W")) << shown.toStdString();
    // As much of the name as the two lines can hold.
    EXPECT_GT(label.fontMetrics().horizontalAdvance(shown), 600);
  }
  EXPECT_EQ(wrapping(loaded("Night")).fittedText(532), "Loaded “Night”. Both macros are OFF.");
}

/// How many rows of the picture hold anything but its ground.
int inkedRows(const QImage& picture) {
  int rows = 0;
  for (int y = 0; y < picture.height(); ++y) {
    bool isInked = false;
    for (int x = 0; x < picture.width(); ++x) {
      isInked = isInked || picture.pixel(x, y) != picture.pixel(0, 0);
    }
    rows += isInked ? 1 : 0;
  }
  return rows;
}

/// DejaVu Sans Mono under another name and with other ascents.
QString registerTallFont() {
  QFile source("/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf");
  precondition(source.open(QIODevice::ReadOnly), "the font DejaVu Sans Mono is installed");
  QByteArray font = source.readAll();
  constexpr qint16 ascent = 2400;  // of 2048 units that are the font's size
  for (const auto& [table, place] : {std::pair{"hhea", 4}, {"OS/2", 68}, {"OS/2", 74}}) {
    // The first place that names a table is the directory, which says where it begins.
    const auto begin = qFromBigEndian<quint32>(font.data() + font.indexOf(table) + 8);
    qToBigEndian<qint16>(ascent, font.data() + begin + place);
  }
  const QString original = "DejaVu Sans Mono";
  const QString changed = "Vorrin Tall Mono";
  QStringEncoder inTwoBytes(QStringEncoder::Utf16BE);
  font.replace(original.toLatin1(), changed.toLatin1());
  font.replace(QByteArray(inTwoBytes(original)), QByteArray(inTwoBytes(changed)));
  precondition(QFontDatabase::addApplicationFontFromData(font) >= 0, "the changed font is one");
  return changed;
}

/// A fixed-pitch font of this size in pixels whose lines ask for far more room above than its
/// letters fill, as those do that hold Chinese or Japanese characters too.
QFont tallFont(int pixels) {
  static const QString family = registerTallFont();
  QFont font(family);
  font.setPixelSize(pixels);
  precondition(QFontInfo(font).family() == family, "the changed font is found");
  return font;
}

TEST(QtTextField, a_label_shows_letters_whole_in_a_font_that_asks_for_much_room) {
  for (const int pixels : {11, 15, 21}) {
    const TextField text = TextField::wrappingLabel("lgjpqy");
    auto& label = wrapping(text);
    label.setFont(tallFont(pixels));
    QLabel unlimited(label.text());
    unlimited.setFont(label.font());
    unlimited.resize(300, 100);
    label.resize(300, label.heightForWidth(300));
    ASSERT_LT(label.height(), QFontMetrics(label.font()).height());
    EXPECT_EQ(inkedRows(label.grab().toImage()), inkedRows(unlimited.grab().toImage())) << pixels;
  }
}

}  // namespace
}  // namespace vorrin
