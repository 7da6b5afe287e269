#include "tall_font.h"

#include <QByteArray>
#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QtEndian>

#include "platform/fatal_error.h"

namespace vorrin {

namespace {

constexpr auto original = "DejaVu Sans Mono";
constexpr auto changed = "Vorrin Tall Mono";
constexpr auto file = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";

/// Where a table of a font file begins.
qsizetype tableIn(const QByteArray& font, const char* tag) {
  constexpr qsizetype directory = 12;
  constexpr qsizetype entrySize = 16;
  const auto count = qFromBigEndian<quint16>(font.constData() + 4);
  for (qsizetype i = 0; i < count; ++i) {
    const qsizetype entry = directory + i * entrySize;
    if (font.mid(entry, 4) == tag) return qFromBigEndian<quint32>(font.constData() + entry + 8);
  }
  fatalError("the font has no such table");
}

void makeTall(QByteArray& font) {
  constexpr qint16 ascent = 2400;  // of 2048 units that are the font's size
  qToBigEndian<qint16>(ascent, font.data() + tableIn(font, "hhea") + 4);
  qToBigEndian<qint16>(ascent, font.data() + tableIn(font, "OS/2") + 68);
  qToBigEndian<qint16>(ascent, font.data() + tableIn(font, "OS/2") + 74);
}

QByteArray inTwoBytes(const char* text) {
  QByteArray result;
  for (; *text != '\0'; ++text) result.append('\0').append(*text);
  return result;
}

QString registerTallFont() {
  QFile source(file);
  precondition(source.open(QIODevice::ReadOnly), "the font DejaVu Sans Mono is installed");
  QByteArray font = source.readAll();
  makeTall(font);
  font.replace(original, changed);
  font.replace(inTwoBytes(original), inTwoBytes(changed));
  precondition(QFontDatabase::addApplicationFontFromData(font) >= 0, "the changed font is one");
  return changed;
}

}  // namespace

QFont tallFont(int pixels) {
  static const QString family = registerTallFont();
  QFont font(family);
  font.setPixelSize(pixels);
  precondition(QFontInfo(font).family() == family, "the changed font is found");
  return font;
}

}  // namespace vorrin
