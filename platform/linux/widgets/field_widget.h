#pragma once

#include <QLineEdit>

#include "platform/linux/widgets/native_view.h"
#include "platform/text_field.h"

namespace vorrin {

/// A line of text that the user can edit.
class FieldWidget : public QLineEdit, public NativeView {
 public:
  explicit FieldWidget(const QString& text);

  TextFieldDelegate delegate;

  /// Replaces the text. What does not fit is shown from its beginning, unless the user is editing.
  void showText(const QString& text);

  [[nodiscard]] std::string_view kindName() const override { return "Field"; }
  [[nodiscard]] QString shownText() const override { return text(); }

 private:
  void tellDelegate();
};

}  // namespace vorrin
