#include <algorithm>

#include "ui/app.h"
#include "ui/theme.h"

namespace vorrin {

namespace {
constexpr Color labelText = Color::sRgb(0.55, 0.61, 0.57);
constexpr Color controlTint = Color::sRgb(0.77, 0.82, 0.79);
}  // namespace

void App::theme(const View& view) {
  if (const auto field = TextField::from(view)) {
    themeTextField(*field);
  } else if (const auto button = Button::from(view)) {
    themeButton(*button);
  }
  for (const View& subview : view.subviews()) theme(subview);
}

void App::themeTextField(const TextField& field) {
  if (!field.isEditable()) {
    if (!field.hasFont()) field.setFont({11, FontWeight::regular});
    field.setTextColor(labelText);
    return;
  }
  field.setFont({12, FontWeight::medium});
  field.setTextColor(hackerGreen);
  field.setRoundedBezel(Color::gray(0.065));
}

void App::themeButton(const Button& button) {
  button.setFont({12, FontWeight::medium});
  button.setContentTintColor(controlTint);
  button.setBezelColor(Color::gray(0.1));
  // A check box's title does not follow the tint, so it gets its colour with its text. The boxes
  // are known by identity: another button may have the same title.
  if (std::find(checks.begin(), checks.end(), button) != checks.end()) {
    button.setAttributedTitle(button.title(), {13, FontWeight::medium}, controlTint);
  }
  if (button.kind() == ButtonKind::push) button.setRegularControlSize();
}

}  // namespace vorrin
