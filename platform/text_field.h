#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/control.h"

namespace vorrin {

class TextField;

/// Who is told of the user's edits in a field.
struct TextFieldDelegate {
  const void* object = nullptr;
  /// After every change of the text by the user; not after `setText`.
  std::function<void(const TextField& field)> controlTextDidChange;
};

/// A line of text to edit, or a label. Texts are UTF-8.
class TextField : public Control {
 public:
  TextField() = default;

  /// A label whose text wraps at words to the width it gets.
  static TextField wrappingLabel(const std::string& text);
  /// A line that the user can edit.
  static TextField field(const std::string& text);
  /// `view` as a text field, or nothing when it is of another kind.
  static std::optional<TextField> from(const View& view);

  [[nodiscard]] std::string text() const;
  void setText(const std::string& text) const;
  [[nodiscard]] bool isEditable() const;
  void setTextColor(const Color& color) const;
  [[nodiscard]] Color textColor() const;

  /// Of labels: at most this many lines are shown.
  void setMaximumNumberOfLines(int lines) const;

  /// Of fields:
  void setPlaceholder(const std::string& text) const;
  /// Gives the field the round bezel, filled with `background`.
  void setRoundedBezel(const Color& background) const;
  void setDelegate(TextFieldDelegate delegate) const;
  /// The object of the delegate, null without one.
  [[nodiscard]] const void* delegate() const;

 private:
  using Control::Control;
};

}  // namespace vorrin
