#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/font.h"
#include "platform/view.h"

namespace vorrin {

class Button;

/// What a control does when the user works it: an operation known by its name. What `perform`
/// refers to must outlive the control's use; it gets the control worked (for menu items an empty
/// one).
struct Action {
  std::string_view selector;  ///< name of the operation; refers to a string literal
  std::function<void(const Button& sender)> perform;
};

/// What fields, buttons, check boxes and pop-ups have in common.
class Control : public View {
 public:
  Control() = default;

  void setEnabled(bool enabled) const;
  [[nodiscard]] bool isEnabled() const;
  void setFont(const Font& font) const;
  /// False until `setFont` was called.
  [[nodiscard]] bool hasFont() const;

  /// The name that a screen reader says.
  void setAccessibilityLabel(const std::string& label) const;
  /// What shows while the pointer rests on it.
  void setToolTip(const std::string& text) const;

 protected:
  using View::View;
};

}  // namespace vorrin
