#include "platform/linux/widgets/field_widget.h"

#include <QValidator>

namespace vorrin {

namespace {

bool isLineBreakOrControl(QChar character) {
  return character.category() == QChar::Other_Control ||
         character.category() == QChar::Separator_Line ||
         character.category() == QChar::Separator_Paragraph;
}

/// Accepts every text, but takes line breaks and control characters out of it. A line cannot show
/// them: what is pasted with a line break at its end means the same without it, and what the field
/// gives back must be what it shows.
class OneLineOnly : public QValidator {
 public:
  using QValidator::QValidator;

  State validate(QString& text, int& position) const override {
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
      if (!isLineBreakOrControl(text.at(i))) continue;
      text.remove(i, 1);
      if (i < position) --position;
    }
    return Acceptable;
  }
};

}  // namespace

FieldWidget::FieldWidget(const QString& text) {
  setValidator(new OneLineOnly(this));
  showText(text);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(this, &QLineEdit::textEdited, this, [this] { tellDelegate(); });
}

void FieldWidget::showText(const QString& newText) {
  if (newText != text()) setText(newText);
  if (!hasFocus()) setCursorPosition(0);
}

void FieldWidget::tellDelegate() {
  const auto didChange = delegate.controlTextDidChange;
  if (!didChange) return;
  if (const auto field = TextField::from(viewOf(*this))) didChange(*field);
}

}  // namespace vorrin
