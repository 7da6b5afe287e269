#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/control.h"

namespace vorrin {

enum class ButtonKind { push, checkbox, popUp };

/// A push button, a check box, or (as `PopUpButton`) a pop-up menu.
class Button : public Control {
 public:
  Button() = default;

  /// A push button with the round bezel.
  static Button push(const std::string& title, Action action);
  static Button checkbox(const std::string& title, Action action);
  /// `view` as a button, or nothing when it is of another kind.
  static std::optional<Button> from(const View& view);

  [[nodiscard]] ButtonKind kind() const;
  [[nodiscard]] std::string title() const;
  void setTitle(const std::string& title) const;
  /// Replaces the title by the same or another text in a font and colour of its own.
  void setAttributedTitle(const std::string& title, const Font& font, const Color& color) const;
  /// A number for the action to tell buttons apart; 0 at first.
  void setTag(int tag) const;
  [[nodiscard]] int tag() const;

  /// Of check boxes; `setOn` performs no action.
  [[nodiscard]] bool isOn() const;
  void setOn(bool on) const;

  void setContentTintColor(const Color& color) const;
  void setBezelColor(const Color& color) const;
  /// Of push buttons: the system's regular height.
  void setRegularControlSize() const;

  /// The name of the operation performed.
  [[nodiscard]] std::string_view action() const;

 protected:
  using Control::Control;
};

}  // namespace vorrin
