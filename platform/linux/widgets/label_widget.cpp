#include "platform/linux/widgets/label_widget.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/linux/foundation/native_text.h"
#include "platform/text.h"

namespace vorrin {

namespace {

constexpr double unlimitedWidth = 1e6;

/// The text as it is drawn: line breaks as the text layout knows them, other control characters as
/// blanks.
QString drawnText(QString text) {
  for (QChar& character : text) {
    if (character == QLatin1Char('\n') || character.category() == QChar::Separator_Paragraph) {
      character = QChar::LineSeparator;
    } else if (character.category() == QChar::Other_Control) {
      character = QLatin1Char(' ');
    }
  }
  return text;
}

}  // namespace

LabelWidget::LabelWidget(const QString& text) {
  setTextFormat(Qt::PlainText);
  setText(text);
}

void LabelWidget::showText(const QString& newText) {
  if (newText != text()) setText(newText);
}

void LabelWidget::setWraps(bool wraps) {
  wraps_ = wraps;
  const auto policy = wraps ? QSizePolicy::Preferred : QSizePolicy::Fixed;
  setSizePolicy(policy, policy);
}

void LabelWidget::setMaximumNumberOfLines(int lines) {
  maximumLines_ = lines;
  updateGeometry();
  update();
}

QSize LabelWidget::sizeHint() const {
  ensurePolished();
  QTextLayout layout(drawnText(text()), font());
  const int lines = breakLines(layout, unlimitedWidth);
  double width = 0;
  for (int i = 0; i < lines; ++i) width = std::max(width, layout.lineAt(i).naturalTextWidth());
  return {static_cast<int>(std::ceil(width)), shownLines(lines) * lineHeight()};
}

QSize LabelWidget::minimumSizeHint() const {
  return wraps_ ? QSize(0, lineHeight()) : sizeHint();
}

int LabelWidget::heightForWidth(int width) const {
  ensurePolished();
  QTextLayout layout(drawnText(text()), font());
  return shownLines(breakLines(layout, width)) * lineHeight();
}

void LabelWidget::paintEvent(QPaintEvent*) {
  QTextLayout layout(fittedText(width()), font());
  const int lines = breakLines(layout, width());
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  for (int i = 0; i < lines; ++i) {
    // Lines that borrow letters from a taller font keep the label's own line height.
    const QTextLine line = layout.lineAt(i);
    const int baseline = baselineInLine() + i * lineHeight();
    line.draw(&painter, QPointF(0, baseline - line.ascent() - line.y()));
  }
}

QString LabelWidget::fittedText(int width) const {
  const auto fits = [this, width](const std::string& text) {
    QTextLayout layout(nativeText(text), font());
    const int lines = breakLines(layout, width);
    return shownLines(lines) == lines;
  };
  return nativeText(shortenedInMiddle(drawnText(text()).toStdString(), fits));
}

int LabelWidget::lineHeight() const {
  // Fonts differ in the room they ask for above and below; the window's height must not.
  constexpr double mostPerPixel = 1.18;
  const auto most = static_cast<int>(std::lround(mostPerPixel * fontInfo().pixelSize()));
  return std::min(fontMetrics().height(), most);
}

int LabelWidget::baselineInLine() const {
  const QFontMetrics metrics = fontMetrics();
  if (metrics.height() == lineHeight()) return metrics.ascent();
  // What the font asks for above and below says little about its letters, which share the room.
  const QRect letters = metrics.tightBoundingRect(QStringLiteral("\u00c5lgj|"));
  return (lineHeight() - letters.height()) / 2 - letters.top();
}

int LabelWidget::breakLines(QTextLayout& layout, double width) const {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  int lines = 0;
  for (QTextLine line = layout.createLine(); line.isValid() && lines <= shownLines(lines);
       line = layout.createLine()) {
    line.setLineWidth(width);
    ++lines;
  }
  layout.endLayout();
  return std::max(lines, 1);
}

int LabelWidget::shownLines(int lines) const {
  return maximumLines_ > 0 ? std::min(lines, maximumLines_) : lines;
}

}  // namespace vorrin
