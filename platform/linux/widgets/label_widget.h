#pragma once

#include <QLabel>
#include <QTextLayout>

#include "platform/linux/widgets/native_view.h"

namespace vorrin {

/// A label that wraps at words, and inside a word that is longer than a line. `QLabel` cannot do
/// the second and asks for more width instead; of it only the text for screen readers is used.
class LabelWidget : public QLabel, public NativeView {
 public:
  explicit LabelWidget(const QString& text);

  /// Shows `text`; does nothing when that is what it shows.
  void showText(const QString& text);
  /// Whether it takes the width it gets and wraps; otherwise it keeps its text's own width.
  void setWraps(bool wraps);
  /// 0 for as many as are needed.
  void setMaximumNumberOfLines(int lines);

  /// The text as it is drawn in lines of this width. Where it needs more of them than may be shown,
  /// it gives up its middle, so that the end is seen.
  [[nodiscard]] QString fittedText(int width) const;

  [[nodiscard]] std::string_view kindName() const override { return "Label"; }
  [[nodiscard]] QString shownText() const override { return text(); }
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return wraps_; }
  [[nodiscard]] int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Breaks `layout` into lines and returns how many there are: at most one more than are shown.
  int breakLines(QTextLayout& layout, double width) const;
  [[nodiscard]] int lineHeight() const;
  [[nodiscard]] int baselineInLine() const;
  [[nodiscard]] int shownLines(int lines) const;

  bool wraps_ = false;
  int maximumLines_ = 0;
};

}  // namespace vorrin
